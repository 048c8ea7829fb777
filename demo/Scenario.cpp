#include "demo/Scenario.h"

#include "demo/DesktopWindows.h"

#include <array>
#include <cerrno>
#include <iostream>

#include <unistd.h>

namespace kintar::demo {

namespace {

constexpr int defaultTimeout = 30 * 1000;
constexpr int pollingInterval = 50;

} // namespace

Scenario::Scenario(Feed& feed, ServerLink& link, WorkstationWindow& window, QObject* parent)
    : QObject(parent), feed_(feed), link_(link), window_(window),
      output_([](const QString& line) { std::cout << line.toStdString() << std::endl; }) {
    polling_.setInterval(pollingInterval);
    timeout_.setInterval(defaultTimeout);
    timeout_.setSingleShot(true);
    following_.setSingleShot(true);
    connect(&following_, &QTimer::timeout, this, &Scenario::nextStep);
    connect(&polling_, &QTimer::timeout, this, &Scenario::check);
    connect(&timeout_, &QTimer::timeout, this, [this] { fail(tr("it took too long")); });
    connect(&feed_, &Feed::failed, this, [this](const QString& reason) {
        if (!step_.isEmpty()) {
            fail(reason);
        }
    });
    connect(&feed_, &Feed::eventFound, this, [this](const CardEvent& event) {
        awaitedPerson_ = event.id;
        window_.play(event);
    });
    connect(&link_, &ServerLink::shown, this, [this](int person) {
        if (person == awaitedPerson_) {
            done();
        }
    });
    connect(&link_, &ServerLink::refused, this, [this](const QString& reason) {
        if (awaitedPerson_ != 0) {
            fail(reason);
        }
    });
}

void Scenario::readFrom(int descriptor) {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &Scenario::readMore);
}

void Scenario::readMore() {
    std::array<char, 4096> buffer{};
    const ssize_t got = ::read(static_cast<int>(notifier_->socket()), buffer.data(), buffer.size());
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (got <= 0) {
        inputEnded_ = true;
        notifier_->setEnabled(false);
        unread_ += '\n';
    } else {
        unread_.append(buffer.data(), static_cast<qsizetype>(got));
    }
    nextStep();
}

void Scenario::nextStep() {
    while (step_.isEmpty() && !ended_) {
        const qsizetype lineEnd = unread_.indexOf('\n');
        if (lineEnd < 0) {
            if (inputEnded_) {
                end(0);
            }
            return;
        }
        const QString line = QString::fromUtf8(unread_.left(lineEnd)).trimmed();
        unread_.remove(0, lineEnd + 1);
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        step_ = line;
        timeout_.start();
        begin(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1));
    }
}

void Scenario::begin(const QString& verb, const QString& argument) {
    bool isNumber = false;
    const int number = argument.toInt(&isNumber);
    if (verb == QLatin1String("event") && isNumber) {
        feed_.findEvent(number);
    } else if (verb == QLatin1String("choose") && isNumber) {
        awaitedPerson_ = number;
        if (!window_.choosePerson(number)) {
            fail(tr("there is no event of that person"));
        }
    } else if (verb == QLatin1String("operator") && isNumber) {
        window_.chooseOperator(number) ? done() : fail(tr("there is no such operator"));
    } else if (verb == QLatin1String("pause") || verb == QLatin1String("resume")) {
        window_.setPaused(verb == QLatin1String("pause"));
        done();
    } else if (verb == QLatin1String("wait-server")) {
        condition_ = [this] { return link_.state() == ServerLink::State::Ready; };
        check();
    } else if (verb == QLatin1String("wait-window") && !argument.isEmpty()) {
        condition_ = [argument] { return isWindowShown(argument); };
        canSeeWindows() ? check() : fail(tr("there is no X11 display to look at"));
    } else if (verb == QLatin1String("quit")) {
        done();
        end(0);
    } else {
        fail(tr("it is no step"));
    }
}

void Scenario::check() {
    if (condition_ && condition_()) {
        done();
    } else {
        polling_.start();
    }
}

void Scenario::done() {
    polling_.stop();
    timeout_.stop();
    condition_ = nullptr;
    awaitedPerson_ = 0;
    output_(QStringLiteral("done ") + step_);
    step_.clear();
    // The next step begins from the event loop, not inside whatever ended this one.
    following_.start();
}

void Scenario::fail(const QString& reason) {
    output_(QStringLiteral("failed ") + step_ + QStringLiteral(": ") + reason);
    end(1);
}

void Scenario::end(int status) {
    if (ended_) {
        return;
    }
    ended_ = true;
    polling_.stop();
    timeout_.stop();
    notifier_.reset();
    Q_EMIT ended(status);
}

} // namespace kintar::demo
