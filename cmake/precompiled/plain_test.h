// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "plain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
