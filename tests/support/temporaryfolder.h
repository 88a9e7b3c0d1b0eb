// A folder that is deleted after its test.
#pragma once

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace ellwynd::test {

class TemporaryFolder {
  public:
    [[nodiscard]] std::filesystem::path path() const { return folder.path().toStdString(); }

    std::filesystem::path write(const std::string &name, const std::string &bytes) const {
        std::ofstream(path() / name, std::ios::binary) << bytes;
        return path() / name;
    }

    [[nodiscard]] std::string read(const std::string &name) const {
        std::ifstream file(path() / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// The bytes of every file below, by path; those of locks are left out.
    [[nodiscard]] std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> all;
        for (const auto &each : std::filesystem::recursive_directory_iterator(path())) {
            const std::string name = each.path().lexically_relative(path()).string();
            if (each.is_regular_file() && !name.ends_with(".lock"))
                all[name] = read(name);
        }
        return all;
    }

  private:
    QTemporaryDir folder;
};

} // namespace ellwynd::test
