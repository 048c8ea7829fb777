// The public classes: one table from which hosts, introspection, documents and argument checks
// come.
#pragma once

#include "base/DateTime.h"
#include "base/RunTimeError.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace kintar {

enum class ValueType : std::uint8_t { None, Int32, Int16, Boolean, String, DateTime };

/// A value of a member. Holds the alternative that its ValueType names.
using Value = std::variant<std::monostate, std::int32_t, std::int16_t, bool, std::string, DateTime>;

template <class T>
constexpr ValueType valueTypeOf() {
    if constexpr (std::is_same_v<T, std::int32_t>) {
        return ValueType::Int32;
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
        return ValueType::Int16;
    } else if constexpr (std::is_same_v<T, bool>) {
        return ValueType::Boolean;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return ValueType::String;
    } else if constexpr (std::is_same_v<T, DateTime>) {
        return ValueType::DateTime;
    } else {
        static_assert(std::is_void_v<T>, "no value type of the class table");
        return ValueType::None;
    }
}

/// An instance of a public class. Its construction is the class's initialisation, its destruction
/// the class's termination.
class PublicObject {
public:
    PublicObject() = default;
    PublicObject(const PublicObject&) = delete;
    PublicObject& operator=(const PublicObject&) = delete;
    virtual ~PublicObject() = default;
};

/// Where an instance sends its signals; the host delivers them to the instance's creator only.
class ObjectSignals {
public:
    virtual ~ObjectSignals() = default;
    /// The value of a readable member is (again) what it is now.
    virtual void changed(std::string_view member) = 0;
    /// A signal that the class declares, with its arguments in order. A host that sends none is
    /// allowed: no client's work may depend on it alone.
    virtual void signal(std::string_view name, const std::vector<Value>& arguments) {
        static_cast<void>(name);
        static_cast<void>(arguments);
    }
};

/// Completes a call whose answer comes later than its handler returns. May be called once; until
/// then further calls of the same client wait. Dropping it uncalled completes the call without an
/// error: the rest of its work was not wanted any more. Calling it after its instance has ended
/// does nothing.
using Completion = std::function<void(std::optional<RunTimeError>)>;

enum class MemberKind : std::uint8_t { WriteOnly, ReadOnly, ReadWrite, Method };

struct Parameter {
    std::string name;
    ValueType type = ValueType::None;
    bool optional = false;
};

/// One member of a public class. Handlers may throw RunTimeError, which is raised to the client.
struct Member {
    std::string name;
    MemberKind kind = MemberKind::WriteOnly;
    ValueType type = ValueType::None;  ///< of a property, or of a method's result
    std::vector<Parameter> parameters; ///< an optional one that is left out arrives as no value
    std::string summary;               ///< one sentence for the reference
    bool signalsChange = false;        ///< whether `ObjectSignals::changed` is sent for it

    std::function<Value(PublicObject&)> get;
    std::function<void(PublicObject&, const Value&)> set;
    std::function<Value(PublicObject&, const std::vector<Value>&)> call;
    /// Instead of `set`, where the answer goes out later than the handler returns.
    std::function<void(PublicObject&, const Value&, Completion)> setLater;
    /// The same instead of `call`, for a method without a result.
    std::function<void(PublicObject&, const std::vector<Value>&, Completion)> callLater;
};

/// Something that an instance tells its creator of itself.
struct Signal {
    std::string name;
    std::vector<Parameter> parameters;
    std::string summary; ///< one sentence for the reference
};

/// A public class: its members in slot order, which only ever grows at the end.
struct PublicClass {
    std::string name;
    std::string summary;
    std::vector<Member> members;
    std::vector<Signal> signals;
    /// Initialises an instance; throws RunTimeError where that fails, with termination already done
    /// as far as the class does it then.
    std::function<std::unique_ptr<PublicObject>(ObjectSignals&)> create;

    /// A member by its name, letter case included; null where there is none.
    [[nodiscard]] const Member* find(std::string_view memberName) const;
};

/// Every public class of the server, in order. Nothing else enumerates classes or members.
class ClassTable {
public:
    /// Throws std::logic_error, and adds nothing, where a name is none (ASCII letters, digits,
    /// underscores) or is there twice without regard to case, or a member lacks what its kind
    /// needs.
    void add(PublicClass publicClass);
    [[nodiscard]] const std::vector<PublicClass>& classes() const { return classes_; }
    /// A class by its name, letter case included; null where there is none.
    [[nodiscard]] const PublicClass* find(std::string_view name) const;

private:
    std::vector<PublicClass> classes_;
};

/// Builds a class's members from pointers to member functions, so that types cannot disagree.
template <class Object>
class ClassBuilder {
public:
    ClassBuilder(std::string name, std::string summary) {
        class_.name = std::move(name);
        class_.summary = std::move(summary);
    }

    template <class T>
    ClassBuilder& let(std::string name, void (Object::*setter)(T), std::string summary) {
        using Plain = std::remove_cvref_t<T>;
        Member member = property<Plain>(std::move(name), MemberKind::WriteOnly, std::move(summary));
        member.set = assign<Plain>(setter);
        class_.members.push_back(std::move(member));
        return *this;
    }

    template <class T>
    ClassBuilder& get(std::string name, T (Object::*getter)() const, std::string summary,
                      bool signalsChange = false) {
        Member member = property<T>(std::move(name), MemberKind::ReadOnly, std::move(summary));
        member.get = read<T>(getter);
        member.signalsChange = signalsChange;
        class_.members.push_back(std::move(member));
        return *this;
    }

    template <class T, class U>
    ClassBuilder& getLet(std::string name, T (Object::*getter)() const, void (Object::*setter)(U),
                         std::string summary) {
        static_assert(std::is_same_v<T, std::remove_cvref_t<U>>);
        Member member = property<T>(std::move(name), MemberKind::ReadWrite, std::move(summary));
        member.get = read<T>(getter);
        member.set = assign<T>(setter);
        class_.members.push_back(std::move(member));
        return *this;
    }

    template <class R, class... Args>
    ClassBuilder& method(std::string name, R (Object::*body)(Args...),
                         std::vector<std::string> parameterNames, std::string summary) {
        Member member;
        member.name = std::move(name);
        member.kind = MemberKind::Method;
        member.type = valueTypeOf<R>();
        member.summary = std::move(summary);
        std::size_t next = 0;
        (member.parameters.push_back(
             {parameterNames.at(next++), valueTypeOf<std::remove_cvref_t<Args>>(), false}),
         ...);
        member.call = [body](PublicObject& object, const std::vector<Value>& arguments) {
            return invoke(static_cast<Object&>(object), body, arguments,
                          std::index_sequence_for<Args...>{});
        };
        class_.members.push_back(std::move(member));
        return *this;
    }

    /// A property whose setter answers the call itself, later than it returns.
    template <class T>
    ClassBuilder& letLater(std::string name, void (Object::*setter)(T, Completion),
                           std::string summary) {
        using Plain = std::remove_cvref_t<T>;
        Member member = property<Plain>(std::move(name), MemberKind::WriteOnly, std::move(summary));
        member.setLater = [setter](PublicObject& object, const Value& value,
                                   Completion completion) {
            (static_cast<Object&>(object).*setter)(std::get<Plain>(value), std::move(completion));
        };
        class_.members.push_back(std::move(member));
        return *this;
    }

    /// A method that answers the call itself, later than it returns.
    template <class T, class Done>
    ClassBuilder& methodLater(std::string name, void (Object::*body)(T, Done),
                              std::string parameterName, std::string summary) {
        using Plain = std::remove_cvref_t<T>;
        Member member;
        member.name = std::move(name);
        member.kind = MemberKind::Method;
        member.summary = std::move(summary);
        member.parameters.push_back({std::move(parameterName), valueTypeOf<Plain>(), false});
        member.callLater = [body](PublicObject& object, const std::vector<Value>& arguments,
                                  Completion completion) {
            (static_cast<Object&>(object).*body)(std::get<Plain>(arguments.at(0)),
                                                 std::move(completion));
        };
        class_.members.push_back(std::move(member));
        return *this;
    }

    ClassBuilder& signal(std::string name, std::vector<Parameter> parameters, std::string summary) {
        class_.signals.push_back({std::move(name), std::move(parameters), std::move(summary)});
        return *this;
    }

    ClassBuilder& creates(std::function<std::unique_ptr<PublicObject>(ObjectSignals&)> create) {
        class_.create = std::move(create);
        return *this;
    }

    PublicClass build() { return std::move(class_); }

private:
    template <class T>
    static Member property(std::string name, MemberKind kind, std::string summary) {
        Member member;
        member.name = std::move(name);
        member.kind = kind;
        member.type = valueTypeOf<T>();
        member.summary = std::move(summary);
        return member;
    }

    template <class T, class Setter>
    static auto assign(Setter setter) {
        return [setter](PublicObject& object, const Value& value) {
            (static_cast<Object&>(object).*setter)(std::get<T>(value));
        };
    }

    template <class T, class Getter>
    static auto read(Getter getter) {
        return [getter](PublicObject& object) -> Value {
            return (static_cast<Object&>(object).*getter)();
        };
    }

    template <class R, class... Args, std::size_t... Index>
    static Value invoke(Object& object, R (Object::*body)(Args...),
                        const std::vector<Value>& arguments, std::index_sequence<Index...>) {
        if constexpr (std::is_void_v<R>) {
            (object.*body)(std::get<std::remove_cvref_t<Args>>(arguments.at(Index))...);
            return {};
        } else {
            return (object.*body)(std::get<std::remove_cvref_t<Args>>(arguments.at(Index))...);
        }
    }

    PublicClass class_;
};

} // namespace kintar
