#include "core/base/program_version.h"

namespace kestro {

std::string_view programVersion() {
    return KESTRO_VERSION;
}

}  // namespace kestro
