#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace kestro::x11_display {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// A reply of the X server, which the protocol library allocates with malloc.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

/// Qt's connection to the X server; nullptr on any other window system, and once the connection is lost. Main
/// thread.
xcb_connection_t* connection();

/// The root window of the server's first screen, which all monitors share.
xcb_window_t root(xcb_connection_t* connection);

/// Whether the server has the extension; false also if the connection is lost. The first call for an extension
/// costs one round trip.
bool hasExtension(xcb_connection_t* connection, xcb_extension_t& extension);

enum class AtomCreation { always, onlyIfKnown };

/// XCB_ATOM_NONE if the connection is lost, or with `onlyIfKnown` if no client has used the name. Costs one round
/// trip until the atom exists; it then lives as long as the server.
xcb_atom_t atom(xcb_connection_t* connection, std::string_view name, AtomCreation creation = AtomCreation::always);

}  // namespace kestro::x11_display
