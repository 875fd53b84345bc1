#include "hostcheck/HostCheck.h"

int main(int argc, char *argv[])
{
    return HostCheck::run(argc, argv);
}
