#include <compactxml.h>

#include <cstring>

#include "ports.h"

int main() {
    return std::strcmp(Schema_NET_portNumber()->name, "portNumber") == 0 ? 0 : 1;
}
