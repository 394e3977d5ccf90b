#pragma once

#include "plain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
