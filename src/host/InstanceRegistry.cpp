#include "host/InstanceRegistry.h"

#include "host/BusNames.h"

#include <algorithm>

namespace kintar::host {

Instance* InstanceRegistry::reserve(const PublicClass& publicClass, const std::string& owner) {
    if (countOf(owner) >= limitPerClient_) {
        return nullptr;
    }
    auto instance = std::make_unique<Instance>();
    instance->number = ++lastNumber_;
    instance->publicClass = &publicClass;
    instance->owner = owner;
    instance->path = instancePath(publicClass.name, instance->number);
    instance->interface = classInterface(publicClass.name);
    Instance* reserved = instance.get();
    byNumber_.emplace(instance->number, std::move(instance));
    ++countByOwner_[owner];
    return reserved;
}

void InstanceRegistry::publish(Instance& instance) {
    byPath_.emplace(instance.path, &instance);
}

Instance* InstanceRegistry::find(std::string_view path) const {
    const auto found = byPath_.find(path);
    return found == byPath_.end() ? nullptr : found->second;
}

std::unique_ptr<Instance> InstanceRegistry::take(const Instance& instance) {
    const auto found = byNumber_.find(instance.number);
    if (found == byNumber_.end()) {
        return nullptr;
    }
    std::unique_ptr<Instance> taken = std::move(found->second);
    byNumber_.erase(found);
    byPath_.erase(taken->path);
    const auto owned = countByOwner_.find(taken->owner);
    if (--owned->second == 0) {
        countByOwner_.erase(owned);
    }
    return taken;
}

Instance* InstanceRegistry::youngestOf(std::string_view owner) const {
    const auto found =
        std::find_if(byNumber_.rbegin(), byNumber_.rend(), [&](const auto& candidate) {
            return candidate.second->owner == owner && candidate.second->object;
        });
    return found == byNumber_.rend() ? nullptr : found->second.get();
}

Instance* InstanceRegistry::youngest() const {
    const auto found = std::find_if(byNumber_.rbegin(), byNumber_.rend(), [](const auto& each) {
        return each.second->object != nullptr;
    });
    return found == byNumber_.rend() ? nullptr : found->second.get();
}

std::size_t InstanceRegistry::countOf(const std::string& owner) const {
    const auto found = countByOwner_.find(owner);
    return found == countByOwner_.end() ? 0 : found->second;
}

std::vector<const Instance*> InstanceRegistry::instancesOf(std::string_view owner) const {
    std::vector<const Instance*> found;
    for (const auto& [number, instance] : byNumber_) {
        if (instance->owner == owner && instance->object) {
            found.push_back(instance.get());
        }
    }
    return found;
}

} // namespace kintar::host
