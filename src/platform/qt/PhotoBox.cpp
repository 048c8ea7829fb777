#include "platform/qt/PhotoBox.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kintar::platform {

namespace {

constexpr std::chrono::milliseconds settleTime{150};
const QString noImageText = QStringLiteral("No Image");

/// The part of `area` that a picture of this size fills with its proportions kept.
QRect fitted(QSize picture, const QRect& area) {
    const QSize size = picture.scaled(area.size(), Qt::KeepAspectRatio);
    return {area.x() + (area.width() - size.width()) / 2,
            area.y() + (area.height() - size.height()) / 2, size.width(), size.height()};
}

QColor mixed(const QColor& one, const QColor& other, double share) {
    return QColor::fromRgbF(static_cast<float>(one.redF() * (1 - share) + other.redF() * share),
                            static_cast<float>(one.greenF() * (1 - share) + other.greenF() * share),
                            static_cast<float>(one.blueF() * (1 - share) + other.blueF() * share));
}

} // namespace

PhotoBox::PhotoBox(PhotoLoader& loader, QWidget* parent) : QWidget(parent), loader_(loader) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, [this] { request(); });
}

PhotoBox::~PhotoBox() {
    loader_.cancel(number_);
}

void PhotoBox::load(const std::string& folder, const std::string& fileName) {
    folder_ = folder;
    fileName_ = fileName;
    setState(State::Blank);
    request();
}

void PhotoBox::clear() {
    loader_.cancel(std::exchange(number_, 0));
    fileName_.clear();
    setState(State::Blank);
}

void PhotoBox::showNoImage() {
    loader_.cancel(std::exchange(number_, 0));
    fileName_.clear();
    setState(State::NoImage);
}

void PhotoBox::request() {
    loader_.cancel(std::exchange(number_, 0));
    const double ratio = devicePixelRatioF();
    number_ = loader_.load(
        {folder_, fileName_, static_cast<int>(width() * ratio), static_cast<int>(height() * ratio)},
        [this](std::uint32_t number, const QImage& photo) { take(number, photo); });
}

void PhotoBox::take(std::uint32_t number, const QImage& photo) {
    if (number != number_) {
        return;
    }
    number_ = 0;
    if (photo.isNull() && state_ == State::Photo) {
        return; // asked again for another size only: the smaller photo is still the right one
    }
    setState(photo.isNull() ? State::NoImage : State::Photo);
    photo_ = photo;
    if (shown_) {
        shown_();
    }
}

void PhotoBox::setState(State state) {
    state_ = state;
    photo_ = {};
    settled_.stop();
    setAccessibleName(state == State::Photo     ? QStringLiteral("Photo")
                      : state == State::NoImage ? noImageText
                                                : QString());
    update();
}

void PhotoBox::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QSize wanted = size() * devicePixelRatioF();
    const bool grew = wanted.width() > photo_.width() && wanted.height() > photo_.height();
    if (state_ == State::Photo && grew) {
        settled_.start();
    }
}

void PhotoBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillRect(rect(),
                     mixed(palette().window().color(), palette().windowText().color(), 0.1));
    if (state_ == State::Photo) {
        paintPhoto(painter);
    } else if (state_ == State::NoImage) {
        paintNoImage(painter);
    }
}

void PhotoBox::paintPhoto(QPainter& painter) const {
    painter.drawImage(fitted(photo_.size(), rect()), photo_);
}

/// An empty frame, crossed out, and the words: nothing of it could be taken for a face.
void PhotoBox::paintNoImage(QPainter& painter) const {
    const QColor ink = mixed(palette().window().color(), palette().windowText().color(), 0.7);
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    const int side = std::min({width() / 3, height() / 3, 96});
    const int textHeight = painter.fontMetrics().height();
    QRect frame(0, 0, side * 4 / 3, side);
    frame.moveCenter(rect().center() - QPoint(0, textHeight * 2 / 3));
    painter.setPen(QPen(ink, std::max(2.0, side / 24.0), Qt::SolidLine, Qt::RoundCap));
    painter.drawRoundedRect(frame, side / 12.0, side / 12.0);
    painter.drawLine(frame.bottomLeft() + QPoint(-side / 8, side / 8),
                     frame.topRight() + QPoint(side / 8, -side / 8));
    const QRect words(0, frame.bottom() + side / 6 + textHeight / 4, width(), textHeight);
    painter.drawText(words, Qt::AlignCenter, noImageText);
}

} // namespace kintar::platform
