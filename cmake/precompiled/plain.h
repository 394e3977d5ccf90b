#pragma once

#include "standard.h"

#include <nlohmann/json.hpp>
