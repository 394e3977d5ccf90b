/// What lies at /stream/: the stations' audio and their playlists. The only place that knows it.
#pragma once

#include "directory/Api.h"

namespace directory {

Answer streamAnswer(const ApiRequest &request);

} // namespace directory
