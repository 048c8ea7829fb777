#include "tools/ctl/RawSession.h"

#include "tools/ctl/RawLine.h"

#include <algorithm>
#include <charconv>

namespace kintar::ctl {

namespace {

void expect(const std::vector<std::string>& words, std::size_t least, std::size_t most,
            const char* form) {
    if (words.size() < least || words.size() > most) {
        throw UsageError(std::string("expected: ") + form);
    }
}

} // namespace

const char* rawLanguage() {
    return "create CLASS [as NAME]          create an object; prints its path\n"
           "set OBJECT MEMBER VALUE         set a property\n"
           "get OBJECT MEMBER               read a property; prints its value\n"
           "getall OBJECT                   read all readable ones; prints MEMBER=VALUE lines\n"
           "call OBJECT MEMBER [VALUE...]   call a method; prints its result, if it has one\n"
           "members OBJECT                  prints the object's members and their types\n"
           "release OBJECT                  end an object\n"
           "wait MILLISECONDS               let time pass\n"
           "\n"
           "OBJECT is a NAME given by create, or a path. Words are separated by blanks; \"...\"\n"
           "holds blanks and knows \\\\ \\\" \\n \\r \\t, '...' takes everything as it stands. "
           "What\n"
           "follows a # at the start of a word is a comment. Numbers are decimal, Booleans are\n"
           "true or false; types come from the server. A text is printed on one line, with\n"
           "backslash, line feed, carriage return and tab as \\\\ \\n \\r \\t.\n";
}

int RawSession::run(std::istream& lines, bool stopAtError) {
    int worst = status::ok;
    std::string line;
    for (long number = 1; std::getline(lines, line); ++number) {
        int result = status::ok;
        const std::string where = "line " + std::to_string(number) + ": ";
        try {
            runLine(splitWords(line));
        } catch (const CallError& error) {
            errors_ << where << error.name() << ": " << error.what() << std::endl;
            result = status::callFailed;
        } catch (const std::runtime_error& error) {
            errors_ << where << error.what() << std::endl;
            result = status::wrongUsage;
        }
        worst = std::max(worst, result);
        if (stopAtError && worst != status::ok) {
            break;
        }
    }
    return worst;
}

void RawSession::runLine(const std::vector<std::string>& words) {
    using Command = void (RawSession::*)(const std::vector<std::string>&);
    static const std::map<std::string, Command> commands{
        {"create", &RawSession::create},   {"set", &RawSession::set},
        {"get", &RawSession::get},         {"getall", &RawSession::getAll},
        {"call", &RawSession::call},       {"members", &RawSession::members},
        {"release", &RawSession::release}, {"wait", &RawSession::wait}};
    if (words.empty()) {
        return;
    }
    const auto command = commands.find(words.front());
    if (command == commands.end()) {
        throw UsageError("unknown command \"" + words.front() + "\" (see kintarctl raw --help)");
    }
    (this->*command->second)(words);
}

void RawSession::create(const std::vector<std::string>& words) {
    expect(words, 2, 4, "create CLASS [as NAME]");
    const bool named = words.size() == 4 && words[2] == "as" && !words[3].empty();
    if (words.size() != 2 && !named) {
        throw UsageError("expected: create CLASS [as NAME]");
    }
    const std::string path = client_.create(words[1]);
    if (named) {
        pathByName_[words[3]] = path;
    }
    results_ << path << std::endl;
}

void RawSession::release(const std::vector<std::string>& words) {
    expect(words, 2, 2, "release OBJECT");
    client_.release(pathOf(words[1]));
    pathByName_.erase(words[1]);
}

void RawSession::set(const std::vector<std::string>& words) {
    expect(words, 4, 4, "set OBJECT MEMBER VALUE");
    client_.set(pathOf(words[1]), words[2], words[3]);
}

void RawSession::get(const std::vector<std::string>& words) {
    expect(words, 3, 3, "get OBJECT MEMBER");
    results_ << onOneLine(client_.get(pathOf(words[1]), words[2])) << std::endl;
}

void RawSession::getAll(const std::vector<std::string>& words) {
    expect(words, 2, 2, "getall OBJECT");
    for (const auto& [member, value] : client_.getAll(pathOf(words[1]))) {
        results_ << member << "=" << onOneLine(value) << std::endl;
    }
}

void RawSession::call(const std::vector<std::string>& words) {
    expect(words, 3, words.size(), "call OBJECT MEMBER [VALUE...]");
    const auto result = client_.call(pathOf(words[1]), words[2], {words.begin() + 3, words.end()});
    if (result) {
        results_ << onOneLine(*result) << std::endl;
    }
}

void RawSession::members(const std::vector<std::string>& words) {
    expect(words, 2, 2, "members OBJECT");
    for (const MemberDescription& member : client_.interfaceOf(pathOf(words[1])).members) {
        results_ << member.line() << std::endl;
    }
}

void RawSession::wait(const std::vector<std::string>& words) {
    expect(words, 2, 2, "wait MILLISECONDS");
    unsigned milliseconds = 0;
    const char* end = words[1].data() + words[1].size();
    const auto [stop, error] = std::from_chars(words[1].data(), end, milliseconds);
    if (error != std::errc() || stop != end) {
        throw UsageError("wait takes a number of milliseconds, not \"" + words[1] + "\"");
    }
    if (!client_.hold(milliseconds / 1000.0, [] { return false; })) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
}

std::string RawSession::pathOf(const std::string& name) const {
    if (name.starts_with("/")) {
        return name;
    }
    const auto found = pathByName_.find(name);
    if (found == pathByName_.end()) {
        throw UsageError("there is no object named \"" + name + "\"");
    }
    return found->second;
}

} // namespace kintar::ctl
