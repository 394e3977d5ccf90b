#include "directory/Streams.h"

namespace directory {

Answer streamAnswer(const ApiRequest &)
{
    return textAnswer(503, "This stream is off the air.");
}

} // namespace directory
