// Loading photos without waiting for them.
#pragma once

#include <QImage>

#include <cstdint>
#include <functional>
#include <string>

namespace kintar::platform {

/// A photo wanted: a file name as the database gives it, looked up below a folder, and the box that
/// the photo is to fit, in device pixels.
struct PhotoRequest {
    std::string folder;
    std::string fileName;
    int width = 0;
    int height = 0;
};

class PhotoLoader {
public:
    /// Gets the number of its request and the photo, upright and within its box; a null image where
    /// there is no photo to show.
    using Done = std::function<void(std::uint32_t number, const QImage& photo)>;

    virtual ~PhotoLoader() = default;
    /// Starts loading and returns at once. `done` is called once, later, from the event loop, at
    /// most about 2 seconds after this call.
    virtual std::uint32_t load(const PhotoRequest& request, Done done) = 0;
    /// The photo is not wanted any more: its `done` will not be called. A number that is done
    /// already, or 0, is no error.
    virtual void cancel(std::uint32_t number) = 0;
};

} // namespace kintar::platform
