#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace kestro::x11_display {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// What an X server answered; the protocol library allocates it with malloc.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

/// The toolkit's own connection to the X server; nullptr on every other window system. Main thread.
xcb_connection_t* connection();

enum class AtomCreation { always, onlyIfKnown };

/// XCB_ATOM_NONE when the server is gone, or when `onlyIfKnown` is asked for and no client has used the name.
/// One round trip, until the atom is there: it then stays as long as the server.
xcb_atom_t atom(xcb_connection_t* connection, std::string_view name, AtomCreation creation = AtomCreation::always);

}  // namespace kestro::x11_display
