#pragma once

#include <string_view>

namespace kestro {

/// Writes to a descriptor that it does not own. A reader that has gone ends it quietly.
class LineWriter {
public:
    explicit LineWriter(int descriptor) : descriptor_(descriptor) {}

    /// Writes everything, waiting for a slow reader. False: not all of it could be written.
    bool write(std::string_view text);

    /// The reader has gone.
    void close() { isOpen_ = false; }

    bool isOpen() const { return isOpen_; }

    /// Whether it has ended for another reason than its reader's end, such as a full disk.
    bool hasFailed() const { return hasFailed_; }

private:
    const int descriptor_;
    bool isOpen_ = true;
    bool hasFailed_ = false;
};

}  // namespace kestro
