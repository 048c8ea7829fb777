// What was measured as sites and the number of workstations grew, and tables of it.
#pragma once

#include "Beside.h"

#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace kintar::bench {

struct Figure {
    std::string engine;
    std::string what;
    int workstations = 0;
    int names = 0;
    double seconds = 0;
    int times = 0; ///< how often it was measured
};

class Figures {
public:
    void add(Figure figure) {
        std::printf("  %s, %d names, %d workstations: %s %.3f ms\n", figure.engine.c_str(),
                    figure.names, figure.workstations, figure.what.c_str(), figure.seconds * 1000);
        std::fflush(stdout);
        all_.push_back(std::move(figure));
    }

    /// Null where it was not measured.
    [[nodiscard]] const Figure* find(const std::string& engine, const std::string& what,
                                     int workstations, int names) const {
        for (const Figure& figure : all_) {
            if (figure.engine == engine && figure.what == what &&
                figure.workstations == workstations && figure.names == names) {
                return &figure;
            }
        }
        return nullptr;
    }

    /// A table for each engine and kind of work: a line for each number of workstations, a column
    /// for each size, with how many times the size before it takes.
    void printTables() const {
        std::set<std::pair<std::string, std::string>> printed;
        for (const Figure& figure : all_) {
            if (printed.emplace(figure.engine, figure.what).second) {
                printTable(figure.engine, figure.what);
            }
        }
    }

    /// A line for each figure, its parts separated by tabs.
    void write(const std::string& path) const {
        std::ofstream file(path);
        file << "engine\twhat\tworkstations\tnames\tseconds\ttimes\n";
        for (const Figure& figure : all_) {
            file << figure.engine << '\t' << figure.what << '\t' << figure.workstations << '\t'
                 << figure.names << '\t' << figure.seconds << '\t' << figure.times << '\n';
        }
    }

private:
    void printTable(const std::string& engine, const std::string& what) const {
        std::set<int> workstations;
        std::set<int> sizes;
        for (const Figure& figure : all_) {
            if (figure.engine == engine && figure.what == what) {
                workstations.insert(figure.workstations);
                sizes.insert(figure.names);
            }
        }
        std::printf("\n%s: %s, milliseconds\n%12s", engine.c_str(), what.c_str(), "workstations");
        for (const int names : sizes) {
            std::printf("%13d names", names);
        }
        for (const int count : workstations) {
            std::printf("\n%12d", count);
            const Figure* before = nullptr;
            for (const int names : sizes) {
                const Figure* figure = find(engine, what, count, names);
                printCell(figure, before);
                before = figure;
            }
        }
        std::puts("");
    }

    static void printCell(const Figure* figure, const Figure* before) {
        if (figure == nullptr) {
            std::printf("%19s", "-");
        } else if (before == nullptr) {
            std::printf("%11.2f        ", figure->seconds * 1000);
        } else {
            std::printf("%11.2f x%6.2f", figure->seconds * 1000, figure->seconds / before->seconds);
        }
    }

    std::vector<Figure> all_;
};

} // namespace kintar::bench
