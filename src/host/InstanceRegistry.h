// Which instances live, who created them, and in which order they end.
#pragma once

#include "server/ClassTable.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kintar::host {

/// An instance of a public class as the host keeps it.
struct Instance {
    std::uint64_t number = 0;
    const PublicClass* publicClass = nullptr;
    std::string owner; ///< the unique bus name of its creator
    std::string path;
    std::string interface;
    // The object ends before the receiver of its signals does.
    std::unique_ptr<ObjectSignals> signals;
    std::unique_ptr<PublicObject> object; ///< null while it is being created
};

/// The instances of all clients. Numbers count up over all classes and are never used again.
class InstanceRegistry {
public:
    explicit InstanceRegistry(std::size_t limitPerClient = 4096)
        : limitPerClient_(limitPerClient) {}

    /// Makes room for an instance that is about to be created; it counts against its owner's limit
    /// at once, and is found only after `publish`. Null where the owner has as many as it may.
    /// The reference stays good until the instance is taken.
    Instance* reserve(const PublicClass& publicClass, const std::string& owner);
    /// From now on `instance` is found under its path.
    void publish(Instance& instance);

    /// The published instance at `path`; null where there is none.
    [[nodiscard]] Instance* find(std::string_view path) const;

    /// Takes an instance out, published or not. The caller ends it by dropping what it gets.
    std::unique_ptr<Instance> take(const Instance& instance);
    /// The youngest published instance of `owner`, or of anybody; null where there is none.
    [[nodiscard]] Instance* youngestOf(std::string_view owner) const;
    [[nodiscard]] Instance* youngest() const;

    /// Reserved and published ones.
    [[nodiscard]] std::size_t count() const { return byNumber_.size(); }
    [[nodiscard]] std::size_t countOf(const std::string& owner) const;
    /// The published instances of `owner`, oldest first.
    [[nodiscard]] std::vector<const Instance*> instancesOf(std::string_view owner) const;
    [[nodiscard]] std::size_t limitPerClient() const { return limitPerClient_; }

private:
    std::size_t limitPerClient_;
    std::uint64_t lastNumber_ = 0;
    std::map<std::uint64_t, std::unique_ptr<Instance>> byNumber_;
    // Keys are views of the instances' own paths.
    std::unordered_map<std::string_view, Instance*> byPath_;
    std::unordered_map<std::string, std::size_t> countByOwner_;
};

} // namespace kintar::host
