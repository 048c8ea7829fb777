#include "host/FakeClasses.h"

#include <QEventLoop>

#include <stdexcept>

namespace kintar::host {

namespace {

class FakeObject : public PublicObject {
public:
    FakeObject(FakeWorld& shared, const std::string& kind)
        : world(shared), name(kind + std::to_string(++shared.lastSerial)) {
        world.note("+" + name);
    }
    ~FakeObject() override { world.note("-" + name); }

    FakeWorld& world;
    std::string name;
};

class objPlain final : public FakeObject {
public:
    objPlain(FakeWorld& shared, ObjectSignals& signals)
        : FakeObject(shared, "plain"), signals_(signals) {
        signals_.changed("Answer"); // nobody knows the object yet
    }

    void Number(std::int32_t value) {
        number_ = value;
        world.note("Number=" + std::to_string(value));
    }
    [[nodiscard]] std::int32_t Answer() const { return number_; }
    [[nodiscard]] std::int16_t getShort() const { return short_; }
    void Short(std::int16_t value) { short_ = value; }
    [[nodiscard]] bool getFlag() const { return flag_; }
    void Flag(bool value) { flag_ = value; }
    [[nodiscard]] std::string getText() const { return text_; }
    void Text(const std::string& value) { text_ = value; }
    [[nodiscard]] DateTime getMoment() const { return moment_; }
    void Moment(DateTime value) { moment_ = value; }

    std::int32_t Add(std::int32_t a, std::int16_t b) { return a + b; }
    void Touch() { signals_.changed("Answer"); }
    void TouchSilent() { signals_.changed("Text"); }
    void Tell() {
        signals_.signal("Told", {std::int16_t{7}, std::string("why")});
        signals_.signal("Told", {std::int16_t{7}}); // not as declared
        signals_.signal("Untold", {});
    }
    std::string Odd() { return std::string("a\0b\xFF\xEF\xBF\xBE", 7); }
    void Overflow() { throw RunTimeError::overflow(); }
    void Break() { throw std::runtime_error("broken"); }
    void BreakOddly() { throw 7; }

private:
    ObjectSignals& signals_;
    std::int32_t number_ = 0;
    std::int16_t short_ = 0;
    bool flag_ = false;
    std::string text_;
    DateTime moment_;
};

class objWitness final : public PublicObject {
public:
    explicit objWitness(FakeWorld& world) : world_(world) {}

    [[nodiscard]] std::string Log() const { return world_.log; }
    void Clear() { world_.log.clear(); }
    [[nodiscard]] std::int32_t Boxes() const {
        return static_cast<std::int32_t>(world_.openBoxes.size());
    }
    void CloseBox() { world_.openBoxes.back()(); }
    void Complete() { take()(std::nullopt); }
    void CompleteWithError() { take()(RunTimeError::invalidCall()); }
    void DropCompletion() { take(); }

private:
    Completion take() {
        Completion first = std::move(world_.completions.front());
        world_.completions.pop_front();
        return first;
    }

    FakeWorld& world_;
};

class objBox final : public FakeObject {
public:
    explicit objBox(FakeWorld& shared) : FakeObject(shared, "box") { Open(); }

    void Open() {
        QEventLoop loop;
        world.openBoxes.push_back([&loop] { loop.quit(); });
        loop.exec();
        world.openBoxes.pop_back();
        world.note("closed " + name);
    }
};

class objLater final : public FakeObject {
public:
    explicit objLater(FakeWorld& shared) : FakeObject(shared, "later") {}

    void setSlow(std::int32_t value, Completion completion) {
        world.note("Slow=" + std::to_string(value));
        if (value == 0) {
            completion(std::nullopt);
        } else if (value == 1) {
            throw RunTimeError::typeMismatch();
        } else if (value > 2) {
            world.completions.push_back(std::move(completion));
        }
        // 2 drops it
    }
    void Quick(std::int32_t value) { world.note("Quick=" + std::to_string(value)); }
};

PublicClass plain(FakeWorld& world) {
    PublicClass described =
        ClassBuilder<objPlain>("objPlain", "Has a member of every kind.")
            .let("Number", &objPlain::Number, "Write-only.")
            .get("Answer", &objPlain::Answer, "Read-only; what `Number` was set to.", true)
            .getLet("Short", &objPlain::getShort, &objPlain::Short, "A 16-bit integer.")
            .getLet("Flag", &objPlain::getFlag, &objPlain::Flag, "A Boolean.")
            .getLet("Text", &objPlain::getText, &objPlain::Text, "A text <&>.")
            .getLet("Moment", &objPlain::getMoment, &objPlain::Moment, "A date-time.")
            .method("Add", &objPlain::Add, {"a", "b"}, "Adds.")
            .method("Touch", &objPlain::Touch, {}, "Reports a change.")
            .signal("Told",
                    {{"number", ValueType::Int16, false}, {"text", ValueType::String, false}},
                    "Something was told.")
            .method("Tell", &objPlain::Tell, {}, "Tells.")
            .method("TouchSilent", &objPlain::TouchSilent, {}, "Reports what signals nothing.")
            .method("Odd", &objPlain::Odd, {}, "Text that no bus takes.")
            .method("Overflow", &objPlain::Overflow, {}, "Raises an error.")
            .method("Break", &objPlain::Break, {}, "Fails.")
            .method("BreakOddly", &objPlain::BreakOddly, {}, "Fails without words.")
            .creates([&world](ObjectSignals& signals) {
                return std::make_unique<objPlain>(world, signals);
            })
            .build();
    Member optional;
    optional.name = "Greet";
    optional.kind = MemberKind::Method;
    optional.type = ValueType::String;
    optional.summary = "Has an optional argument.";
    optional.parameters = {{"name", ValueType::String, false}, {"times", ValueType::Int16, true}};
    optional.call = [](PublicObject&, const std::vector<Value>& arguments) -> Value {
        const auto* times = std::get_if<std::int16_t>(&arguments.at(1));
        return std::get<std::string>(arguments.at(0)) + (times ? std::to_string(*times) : "-");
    };
    described.members.push_back(optional);
    return described;
}

PublicClass witness(FakeWorld& world) {
    return ClassBuilder<objWitness>("objWitness", "Tells what happened.")
        .get("Log", &objWitness::Log, "What happened.")
        .get("Boxes", &objWitness::Boxes, "Open boxes.")
        .method("Clear", &objWitness::Clear, {}, "Empties the log.")
        .method("CloseBox", &objWitness::CloseBox, {}, "Closes the innermost box.")
        .method("Complete", &objWitness::Complete, {}, "Completes the oldest late call.")
        .method("CompleteWithError", &objWitness::CompleteWithError, {}, "The same, with 5.")
        .method("DropCompletion", &objWitness::DropCompletion, {}, "Forgets it.")
        .creates([&world](ObjectSignals&) { return std::make_unique<objWitness>(world); })
        .build();
}

PublicClass later(FakeWorld& world) {
    PublicClass described =
        ClassBuilder<objLater>("objLater", "Answers later.")
            .let("Quick", &objLater::Quick, "Answers at once.")
            .creates([&world](ObjectSignals&) { return std::make_unique<objLater>(world); })
            .build();
    Member slow;
    slow.name = "Slow";
    slow.kind = MemberKind::WriteOnly;
    slow.type = ValueType::Int32;
    slow.summary = "Answers when the witness says so.";
    slow.setLater = [](PublicObject& object, const Value& value, Completion completion) {
        static_cast<objLater&>(object).setSlow(std::get<std::int32_t>(value),
                                               std::move(completion));
    };
    described.members.push_back(slow);
    return described;
}

class Recorder final : public FakeObject {
public:
    using FakeObject::FakeObject;
};

Member recordedProperty(FakeWorld& world, const std::string& name, ValueType type) {
    Member member;
    member.name = name;
    member.type = type;
    member.summary = "Recorded.";
    member.set = [&world, name](PublicObject&, const Value& value) {
        const auto* text = std::get_if<std::string>(&value);
        world.note(name + "=" + (text ? *text : std::to_string(std::get<std::int32_t>(value))));
    };
    return member;
}

// Has the members of the class that shows a card event, and only records them.
PublicClass recorder(FakeWorld& world) {
    PublicClass described;
    described.name = "objKintar";
    described.summary = "Records.";
    for (const char* name : {"ID", "LocGrp", "OprID"}) {
        described.members.push_back(recordedProperty(world, name, ValueType::Int32));
    }
    for (const char* name :
         {"LocName", "FName", "LName", "Device", "EventDesc", "DateTime", "Code"}) {
        described.members.push_back(recordedProperty(world, name, ValueType::String));
    }
    described.create = [&world](ObjectSignals&) {
        return std::make_unique<Recorder>(world, "kintar");
    };
    return described;
}

} // namespace

ClassTable fakeClasses(FakeWorld& world) {
    ClassTable table;
    table.add(plain(world));
    table.add(witness(world));
    table.add(later(world));
    table.add(ClassBuilder<objBox>("objBox", "Opens a modal box.")
                  .method("Open", &objBox::Open, {}, "Opens another one.")
                  .creates([&world](ObjectSignals&) { return std::make_unique<objBox>(world); })
                  .build());
    table.add(ClassBuilder<objPlain>("objBroken", "Cannot be created.")
                  .creates([&world](ObjectSignals&) -> std::unique_ptr<PublicObject> {
                      world.note("refused");
                      throw RunTimeError::duplicateKey();
                  })
                  .build());
    table.add(recorder(world));
    return table;
}

} // namespace kintar::host
