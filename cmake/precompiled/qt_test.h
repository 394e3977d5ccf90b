#pragma once

#include "qt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
