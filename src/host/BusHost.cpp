#include "host/BusHost.h"

#include "host/BusNames.h"
#include "host/BusReply.h"
#include "host/Introspection.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace kintar::host {

namespace {

// The node names below a path that leads to objects; nothing where the path leads nowhere.
// Of the instances only those of the caller are shown.
std::optional<std::vector<std::string>> childrenOf(const std::string& path, const ClassTable& table,
                                                   const std::vector<const Instance*>& own) {
    const std::string root = rootPath;
    if (path == "/" || (root.starts_with(path) && root[path.size()] == '/')) {
        const std::string rest = root.substr(path == "/" ? 1 : path.size() + 1);
        return std::vector<std::string>{rest.substr(0, rest.find('/'))};
    }
    std::vector<std::string> children;
    if (path == root) {
        for (const Instance* instance : own) {
            if (std::find(children.begin(), children.end(), instance->publicClass->name) ==
                children.end()) {
                children.push_back(instance->publicClass->name);
            }
        }
        return children;
    }
    for (const PublicClass& publicClass : table.classes()) {
        if (path == classPath(publicClass.name)) {
            for (const Instance* instance : own) {
                if (instance->publicClass == &publicClass) {
                    children.push_back(std::to_string(instance->number));
                }
            }
            return children;
        }
    }
    return std::nullopt;
}

} // namespace

BusHost::BusHost(const ClassTable& table, HostOptions options)
    : table_(table), options_(std::move(options)), registry_(options_.instancesPerClient),
      watch_(connection_, [this](const std::string& client) { clientLeft(client); }),
      instanceCalls_(connection_, [this](const BusMessage& call) { return hold(call); }),
      serverCalls_({table, options_.version, connection_, registry_, watch_,
                    [this](const Instance& instance) { end(instance); },
                    [this] { instanceCountChanged(); },
                    [this](const std::string& text) { log(text); }}) {
    grace_.setSingleShot(true);
    QObject::connect(&grace_, &QTimer::timeout, &grace_, [this] { graceOver(); });
}

BusHost::~BusHost() {
    endAll();
}

void BusHost::start() {
    connection_.open(options_.address);
    connection_.serve([this](const BusMessage& message) { handle(message); }, [this] { lost(); });
    if (!connection_.requestName()) {
        throw std::runtime_error(std::string(busName) + " is served by another process");
    }
    instanceCountChanged();
}

void BusHost::stop() {
    if (!stopped_) {
        stopped_ = true;
        grace_.stop();
        connection_.closeGate();
    }
}

void BusHost::endAll() {
    stop();
    while (!held_.empty()) {
        const BusMessage call = held_.begin()->second.call;
        forgetHeld(call.sender());
        answer(call, [&] { throw BusError(errors::failed, "The server ends"); });
    }
    while (const Instance* instance = registry_.youngest()) {
        end(*instance);
    }
    connection_.flush();
}

void BusHost::handle(const BusMessage& message) {
    std::uint8_t type = 0;
    if (sd_bus_message_get_type(message.get(), &type) < 0 || type != SD_BUS_MESSAGE_METHOD_CALL) {
        return;
    }
    const std::string client = message.sender();
    if (!lines_.add(client, message)) {
        replyError(connection_, message, errors::limitsExceeded,
                   "Too many calls wait for an earlier one to be answered");
        return;
    }
    runLine(client);
}

void BusHost::runLine(const std::string& client) {
    while (!stopped_) {
        const std::optional<BusMessage> call = lines_.begin(client);
        if (!call) {
            return;
        }
        answer(*call, [&] { dispatch(client, *call); });
        if (letGo(client)) {
            return;
        }
        lines_.end(client);
        if (leaving_.erase(client) > 0) {
            lines_.dropWaiting(client);
            endInstancesOf(client);
        }
    }
}

void BusHost::answer(const BusMessage& call, const std::function<void()>& work) {
    try {
        try {
            work();
        } catch (...) {
            // What was held for this call is answered by its error instead.
            forgetHeld(call.sender());
            answerException(call);
        }
    } catch (const std::exception& error) {
        log(std::string(call.path()) + " " + call.member() + " not answered: " + error.what());
    }
}

void BusHost::dispatch(const std::string& client, const BusMessage& call) {
    if (Instance* instance = registry_.find(call.path())) {
        if (isIntrospection(call)) {
            expectArguments(call, "", "Introspect", "()");
            const BusMessage answer = newReply(call);
            appendText(answer, introspectInstance(*instance->publicClass));
            reply(connection_, call, answer);
            return;
        }
        if (instance->owner != client) {
            throw BusError(errors::accessDenied,
                           std::string("Only its creator may use ") + call.path());
        }
        instanceCalls_.run(*instance, call);
    } else if (std::string_view(call.path()) == rootPath && !isIntrospection(call)) {
        serverCalls_.run(client, call);
    } else {
        dispatchFolder(call);
    }
}

void BusHost::dispatchFolder(const BusMessage& call) {
    const std::string path = call.path();
    const auto children = childrenOf(path, table_, registry_.instancesOf(call.sender()));
    if (!children) {
        throw BusError(errors::unknownObject, "There is no object " + path);
    }
    if (!isIntrospection(call)) {
        const std::string interface = interfaceOf(call, introspectableInterface);
        if (interface != introspectableInterface && interface != peerInterface) {
            unknownInterface(interface, path);
        }
        unknownMethod(interface, call.member());
    }
    expectArguments(call, "", "Introspect", "()");
    const BusMessage answer = newReply(call);
    appendText(answer,
               path == rootPath ? introspectServer(*children) : introspectFolder(*children));
    reply(connection_, call, answer);
}

void BusHost::answerException(const BusMessage& call) {
    const std::string what = std::string(call.path()) + " " + call.member();
    try {
        throw;
    } catch (const BusError& error) {
        replyError(connection_, call, error.name(), error.what());
    } catch (const RunTimeError& error) {
        replyError(connection_, call, errors::runTime, error.clientText());
    } catch (const std::exception& error) {
        log(what + " failed: " + error.what());
        replyError(connection_, call, errors::failed, what + " failed inside the server");
    } catch (...) {
        log(what + " failed for an unknown reason");
        replyError(connection_, call, errors::failed, what + " failed inside the server");
    }
}

Completion BusHost::hold(const BusMessage& call) {
    auto late = std::make_shared<LateAnswer>(
        [this, call](const std::optional<RunTimeError>& error) { completed(call, error); });
    held_.insert_or_assign(call.sender(), HeldCall{call, late, late});
    return [late](std::optional<RunTimeError> error) { late->complete(std::move(error)); };
}

// After the handler has returned: whether the client's call goes on to be held.
bool BusHost::letGo(const std::string& client) {
    const auto held = held_.find(client);
    if (held == held_.end()) {
        return false;
    }
    // A handler that kept nothing has dropped its completion, which completes the call here.
    const std::shared_ptr<LateAnswer> guard = std::exchange(held->second.guard, nullptr);
    return true;
}

void BusHost::completed(const BusMessage& call, const std::optional<RunTimeError>& error) {
    const std::string client = call.sender();
    const auto held = held_.extract(client);
    answer(call, [&] {
        if (error) {
            throw RunTimeError(*error);
        }
        replyEmpty(connection_, call);
    });
    if (!held || held.mapped().guard) {
        return; // still inside the handler, whose caller goes on with the line
    }
    // The completion comes from a window's own routine: the next call must not run inside it.
    connection_.post([this, client] {
        lines_.end(client);
        runLine(client);
    });
}

void BusHost::forgetHeld(const std::string& client) {
    if (const auto held = held_.extract(client)) {
        if (const auto late = held.mapped().answer.lock()) {
            late->cancel();
        }
    }
}

void BusHost::clientLeft(const std::string& client) {
    if (const auto held = held_.find(client); held != held_.end() && !held->second.guard) {
        forgetHeld(client);
        lines_.end(client);
    }
    if (lines_.isUnderWay(client)) {
        leaving_.insert(client);
        return;
    }
    lines_.dropWaiting(client);
    endInstancesOf(client);
}

void BusHost::endInstancesOf(const std::string& client) {
    while (const Instance* instance = registry_.youngestOf(client)) {
        end(*instance);
    }
}

void BusHost::end(const Instance& instance) {
    const std::unique_ptr<Instance> taken = registry_.take(instance);
    if (registry_.countOf(taken->owner) == 0) {
        watch_.unwatch(taken->owner);
    }
    // Its termination may run window messages; by then nobody finds it any more.
    taken->object.reset();
    instanceCountChanged();
}

void BusHost::instanceCountChanged() {
    if (registry_.count() > 0 || stopped_) {
        grace_.stop();
    } else if (!grace_.isActive()) {
        grace_.start(options_.grace);
    }
}

void BusHost::graceOver() {
    if (!connection_.isGateOpen() || !lines_.empty()) {
        grace_.start(options_.grace);
        return;
    }
    // Whoever calls from now on starts a new server; what was called before is still answered.
    connection_.releaseName();
    connection_.pump(std::numeric_limits<int>::max());
    if (registry_.count() > 0 || !lines_.empty() || stopped_) {
        return;
    }
    if (connection_.hasName()) {
        grace_.start(options_.grace);
        return;
    }
    stop();
    connection_.flush();
    options_.finished(0);
}

void BusHost::lost() {
    log("the session bus has gone away; the server ends");
    stop();
    options_.finished(0);
}

void BusHost::log(const std::string& text) const {
    if (options_.log) {
        options_.log(text);
    }
}

} // namespace kintar::host
