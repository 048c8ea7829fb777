#include "base/RunTimeError.h"
#include "companion/dialect/Lexer.h"
#include "tools/sql/SqlCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace {

constexpr int statementFailed = 1;
constexpr int wrongCommandLine = 2;

const char* const description = "Runs a statement of the dialect on a site and prints the rows.\n\n"
                                "The database is opened for reading only unless --write is given.";

const char* const footer =
    "Examples:\n"
    "  kintar-sql SITE \"SELECT ID, LName FROM [Names] WHERE LName LIKE 'sm%' ORDER BY LName\"\n"
    "  kintar-sql SITE --explain \"SELECT FileName FROM Images WHERE NameID = 17\"\n"
    "  kintar-sql SITE --csv < statement.sql > rows.csv\n"
    "  kintar-sql SITE --write \"DELETE FROM OvrSchedule WHERE ID = 7\"\n\n"
    "Exit status: 0 done, 1 the statement, the site or its database is at fault, 2 wrong command "
    "line.";

/// One character more than a statement may have: enough to be told that it is too long.
std::string readStatement(std::istream& in) {
    std::string text(kintar::companion::dialect::maximumStatementLength + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}

int run(const kintar::tools::SqlRequest& request) {
    try {
        kintar::tools::runSql(request, std::cout);
        std::cout.flush();
    } catch (const std::exception& error) {
        std::cerr << "kintar-sql: " << error.what() << "\n";
        return statementFailed;
    }
    if (!std::cout) {
        std::cerr << "kintar-sql: The rows could not be written.\n";
        return statementFailed;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    using kintar::tools::RowsFormat;
    kintar::tools::SqlRequest request;
    bool asCsv = false;
    bool asJson = false;
    CLI::App app(description, "kintar-sql");
    app.footer(footer);
    app.add_option("SITE", request.site, "the site's folder")->required();
    app.add_option("STATEMENT", request.statement,
                   "the statement; read from standard input if left out");
    auto* csv = app.add_flag("--csv", asCsv, "rows as comma-separated values");
    auto* json = app.add_flag("--json", asJson, "rows as an array of objects")->excludes(csv);
    app.add_flag("--explain", request.explain,
                 "tell what the engine gets, its values and its plan; run nothing")
        ->excludes(csv)
        ->excludes(json);
    app.add_flag("--write", request.write, "allow INSERT, UPDATE and DELETE");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : wrongCommandLine;
    }
    request.format = asCsv ? RowsFormat::Csv : asJson ? RowsFormat::Json : RowsFormat::Aligned;
    if (app.count("STATEMENT") == 0) {
        request.statement = readStatement(std::cin);
    }
    return run(request);
}
