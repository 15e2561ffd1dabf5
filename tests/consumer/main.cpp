// Builds against the installed package and calls one routine.
#include <crvlib/crvlib.h>

int main() {
  return crvlib::Constants::vxVBAR() == u"|" ? 0 : 1;
}
