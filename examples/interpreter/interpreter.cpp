// Resolves names as an interpreter does: reads statements from standard input, and says for each
// which file would run.
//
//     interpreter DIRECTORY...
//
//     plot             a function, as the code that runs at present sees it
//     area Shape       a function called with an object of a class: a method of the class first
//     Shape            the constructor of a class
//     geo.area         a function of a package; geo.Point a class of one
//     > plot           calls plot: what follows runs inside of its file
//     <                returns from it
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <vpath/pathname.h>
#include <vpath/search.h>
#include <vpath_posix/posix_host.h>

namespace {

// Of two files of one name the first in order of precedence wins, whatever its extension.
const char* g_extensions[] = {"v", "p", nullptr};

constexpr size_t kNameSize = 8192;

// The library asks this once for each file that may define a class, and remembers the answer.
bool IsClass(const char* file) {
    std::string word;
    return std::ifstream(file) >> word && word == "classdef";
}

class Interpreter {
  public:
    explicit Interpreter(const vpPath& path) : path_(path) {}

    void run(const std::string& line) {
        std::istringstream words(line);
        std::string first;
        std::string second;
        if (!(words >> first)) return;
        words >> second;
        if (first == "<") {
            if (!running_.empty()) running_.pop_back();
        } else if (first == ">") {
            const std::string file = resolve(second, "");
            say(second, file);
            if (!file.empty()) running_.push_back(file);
        } else {
            say(line, resolve(first, second));
        }
    }

  private:
    // The file that a call of `function` runs, empty when there is none. `argument` is the class of
    // the object that it is given.
    std::string resolve(const std::string& function, const std::string& argument) {
        if (!argument.empty()) {
            std::string method = method_of(argument, function);
            if (!method.empty()) return method;
        }
        const size_t dot = function.rfind('.');
        return dot == std::string::npos ? visible(function) : in_package(function, dot);
    }

    // The code that runs sees its private directory, then constructors, then the path; at the
    // prompt no code runs.
    std::string visible(const std::string& name) {
        char file[kNameSize];
        const unsigned int found =
            running_.empty()
                ? first_of_class_or_path(name, file)
                : vpFindFirstFileVisibleToFile(path_, running_.back().c_str(), name.c_str(),
                                               g_extensions, vpReadCheckVerify, nullptr, file);
        return found != 0 ? file : "";
    }

    // A search from no directory has nothing private to see.
    unsigned int first_of_class_or_path(const std::string& name, char* file) {
        vpSearch* search = vpCreateDirnameVisibleSearch(path_, nullptr, name.c_str(), g_extensions,
                                                        vpReadCheckVerify);
        if (search == nullptr) return 0;
        const unsigned int found = vpFindNextFile(search, nullptr, file);
        vpDestroySearch(&search);
        return found;
    }

    // A class has a directory in any number of directories of the path; their methods are its own.
    std::string method_of(const std::string& className, const std::string& method) {
        char file[kNameSize];
        const std::string name = "@" + className + "/" + method;
        const bool found = vpFindFirstFileInAll(path_, name.c_str(), g_extensions,
                                                vpReadCheckVerify, nullptr, file) != 0;
        return found ? file : "";
    }

    // "geo.flat.area" is the file area of +geo/+flat, or the class geo.flat.area.
    std::string in_package(const std::string& name, size_t dot) {
        char file[kNameSize];
        std::string qualified(1, '+');
        for (size_t i = 0; i < name.size(); ++i) {
            if (name[i] != '.') {
                qualified += name[i];
            } else {
                qualified += i == dot ? "/" : "/+";
            }
        }
        if (vpFindFirstFileInAll(path_, qualified.c_str(), g_extensions, vpReadCheckVerify, nullptr,
                                 file) != 0) {
            return file;
        }
        const bool isClass =
            vpGetClassFile(path_, name.c_str(), file, static_cast<int>(kNameSize), g_extensions);
        return isClass ? file : "";
    }

    void say(const std::string& statement, const std::string& file) {
        char qualified[kNameSize];
        const std::string depth(2 * running_.size(), ' ');
        std::printf("%s%s: %s", depth.c_str(), statement.c_str(),
                    file.empty() ? "undefined" : file.c_str());
        if (vpGetClassNameFromFullName(file.c_str(), qualified, sizeof qualified) != nullptr) {
            std::printf(" (class %s)", qualified);
        } else if (vpGetPackageNameFromFullName(file.c_str(), qualified, sizeof qualified) !=
                   nullptr) {
            std::printf(" (package %s)", qualified);
        }
        std::printf("\n");
    }

    vpPath path_;
    std::vector<std::string> running_;  // files, the innermost last
};

}  // namespace

int main(int argc, char** argv) {
    vpSetMessageFcns(
        nullptr, [](const char* text) { std::fprintf(stderr, "%s\n", text); }, nullptr);
    vpInstallPosixHost();
    vpSetIsClassFcn(IsClass);
    vpPath path = vpCreatePathWithPreFrozen(0, "main", nullptr, vpCaseDefault, false);
    vpAddDirsArray(path, const_cast<const char**>(argv + 1), argc - 1, vpAddAtEnd);

    Interpreter interpreter(path);
    for (std::string line; std::getline(std::cin, line);) {
        // What has changed since the last statement is seen by this one.
        vpRefreshAllDirectories(path, vpRefreshIfChanged);
        interpreter.run(line);
    }
    vpRemovePath(path);
}
