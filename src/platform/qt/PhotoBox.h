// The image control of the photo windows.
#pragma once

#include "platform/qt/PhotoLoader.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <string>

namespace kintar::platform {

/// Shows a photo scaled into its area, the words "No Image", or nothing while a photo is on its
/// way. Over its lower edge it can carry a line of text that belongs to the photo.
///
/// A photo that arrives for an earlier request is never shown.
class PhotoBox final : public QWidget {
public:
    /// The loader must outlive the box.
    PhotoBox(PhotoLoader& loader, QWidget* parent);
    PhotoBox(const PhotoBox&) = delete;
    PhotoBox& operator=(const PhotoBox&) = delete;
    ~PhotoBox() override;

    enum class State { Blank, Photo, NoImage };

    /// Blanks the box at once and loads the photo of a file name below `folder`.
    void load(const std::string& folder, const std::string& fileName);
    /// Shows nothing, for nobody; a photo on its way is dropped.
    void clear();
    /// Shows "No Image"; a photo on its way is dropped.
    void showNoImage();

    [[nodiscard]] State state() const { return state_; }
    /// The photo as it was loaded; null in the other states.
    [[nodiscard]] const QImage& photo() const { return photo_; }

    /// Called when a photo, or "No Image", takes the place of the blank box.
    void onShown(std::function<void()> shown) { shown_ = std::move(shown); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void request();
    void take(std::uint32_t number, const QImage& photo);
    void setState(State state);
    void paintPhoto(QPainter& painter) const;
    void paintNoImage(QPainter& painter) const;

    PhotoLoader& loader_;
    std::string folder_;
    std::string fileName_;
    std::uint32_t number_ = 0; ///< of the request under way, 0: none
    State state_ = State::Blank;
    QImage photo_;
    std::function<void()> shown_;
    QTimer settled_; ///< runs out when the size has stopped changing
};

} // namespace kintar::platform
