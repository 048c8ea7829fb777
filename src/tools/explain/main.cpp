// kintar-explain: applies one rule of the system to lines of input.
#include "tools/explain/Rules.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

namespace {

using kintar::explain::Rule;
using kintar::explain::rules;

std::string listOfRules() {
    std::string list = "Rules:\n";
    for (const Rule& rule : rules()) {
        list += "  " + std::string(rule.name) + "\n      " + std::string(rule.help) + "\n";
    }
    return list + "\nExample:\n"
                  "  echo '{\"id\":1,\"text\":\"30 days\",\"reading\":\"leading\"}' | "
                  "kintar-explain number\n\n"
                  "Exit status: 0 all lines answered (an answer may be an error), "
                  "1 output failed, 2 wrong call.\n";
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Applies one rule of the system to JSON lines on standard input and writes one "
                 "JSON line for each, in order, with the same id. A line that cannot be read gives "
                 "an error and the next line goes on."};
    std::string name;
    app.add_option("RULE", name, "which rule")->required();
    app.footer(listOfRules());
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    const auto rule = std::ranges::find(rules(), name, &Rule::name);
    if (rule == rules().end()) {
        std::cerr << "kintar-explain: there is no rule '" << name << "' (see --help)\n";
        return 2;
    }
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        std::cout << kintar::explain::answerLine(*rule, line) << '\n';
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}
