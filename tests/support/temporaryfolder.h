// A folder that is deleted after its test.
#pragma once

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <iterator>
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

  private:
    QTemporaryDir folder;
};

} // namespace ellwynd::test
