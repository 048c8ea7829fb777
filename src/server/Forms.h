// The places of the server's forms: one default instance each, made on first use.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace kintar {

/// The place of one form, as shut-down sees it.
class FormPlace {
public:
    virtual ~FormPlace() = default;
    /// Unloads the default instance if there is one; the next use makes a fresh one.
    virtual void unload() = 0;
    [[nodiscard]] virtual bool exists() const = 0;
};

/// The default instance of a form. `Form` offers `unload()`, which saves what the form keeps, hides
/// it and reports its end; `Deleter` disposes of it once no routine of it is running.
template <class Form>
class DefaultInstance final : public FormPlace {
public:
    using Owner = std::unique_ptr<Form, std::function<void(Form*)>>;

    explicit DefaultInstance(std::function<Owner()> make) : make_(std::move(make)) {}
    DefaultInstance(const DefaultInstance&) = delete;
    DefaultInstance& operator=(const DefaultInstance&) = delete;
    ~DefaultInstance() override { DefaultInstance::unload(); }

    /// The instance, made where there is none.
    Form& get() {
        if (!form_) {
            form_ = make_();
        }
        return *form_;
    }
    [[nodiscard]] bool exists() const override { return form_ != nullptr; }

    void unload() override {
        // The place is empty before the form unloads: what unloading calls already sees none.
        if (Owner form = std::exchange(form_, nullptr)) {
            form->unload();
        }
    }

private:
    std::function<Owner()> make_;
    Owner form_;
};

enum class FormId : std::uint8_t {
    frmKintar,
    frmNameSearch,
    frmAlarmPopUp,
    frmOvrSchedule,
    frmSelName,
    frmInOut,
    frmPrnRpt,
};
inline constexpr std::size_t formCount = 7;

/// The seven places. A form that is not part of this build has an empty one.
class Forms {
public:
    void place(FormId id, FormPlace& place) { places_.at(static_cast<std::size_t>(id)) = &place; }
    void remove(FormId id) { places_.at(static_cast<std::size_t>(id)) = nullptr; }
    void unload(FormId id) {
        if (FormPlace* place = places_.at(static_cast<std::size_t>(id))) {
            place->unload();
        }
    }

private:
    std::array<FormPlace*, formCount> places_{};
};

} // namespace kintar
