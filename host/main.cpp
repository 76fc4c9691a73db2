#include "Program.h"

int main(int argc, char** argv) {
    return static_cast<int>(KestoHost::runProgram(argc, argv));
}
