#include "decoder/DecoderProgram.h"

int main()
{
    return runDecoder();
}
