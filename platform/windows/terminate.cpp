#include <cstdlib>
#include <exception>

// In the place of the run-time library's own, which explains itself on a console that a component does not
// have, and brings along a demangler of names for it.
void __gnu_cxx::__verbose_terminate_handler() { std::abort(); }
