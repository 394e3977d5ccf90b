#include "worker/WorkerProgram.h"

int main(int argc, char **argv)
{
    return runWorker(argc, argv);
}
