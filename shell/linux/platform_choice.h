#pragma once

namespace kestro {

/// Chooses the toolkit's window system for this session, through its environment variables. Call it before the
/// application object exists.
///
/// In a Wayland session that also offers X11, the program uses X11, where it can place the popover under its item.
/// Without X11 it draws in shared memory instead of loading the graphics driver, which costs twice the memory of
/// the rest. A choice that the user has made in QT_QPA_PLATFORM stays.
void choosePlatform();

}  // namespace kestro
