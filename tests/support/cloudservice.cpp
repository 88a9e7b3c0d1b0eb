#include "support/cloudservice.h"

#include <fstream>
#include <iterator>

namespace ellwynd::test {

namespace fs = std::filesystem;

Replica::Replica(fs::path path, fs::path away, CloudServer &server)
    : folder(std::move(path)), awayFolder(std::move(away)), server(server) {
    fs::create_directories(folder);
}

bool Replica::isAway() const {
    return fs::exists(awayFolder);
}

void Replica::setAway(bool away) {
    if (away == isAway())
        return;
    if (away) {
        fs::rename(folder, awayFolder);
    } else {
        fs::remove_all(folder);
        fs::rename(awayFolder, folder);
    }
}

void Replica::createMountPoint() const {
    if (isAway())
        fs::create_directory(folder);
}

fs::path Replica::current() const {
    return isAway() ? awayFolder : folder;
}

FileContent Replica::read(const std::string &name) const {
    std::ifstream file(current() / name, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void Replica::write(const std::string &name, const FileContent &content) const {
    if (content)
        std::ofstream(current() / name, std::ios::binary) << *content;
    else
        fs::remove(current() / name);
}

void Replica::upload(const std::string &name) {
    if (incomplete.contains(name))
        return;
    Base &base = bases[name];
    const FileContent now = read(name);
    if (now == base.content)
        return;
    auto &versions = server[name];
    if (base.version < versions.size()) {
        if (now)
            write(name + " (conflicted copy)", now);
        write(name, versions.back());
    } else {
        versions.push_back(now);
    }
    base = {.version = versions.size(), .content = versions.back()};
}

void Replica::deliver(const std::string &name, Delivery delivery, int draw) {
    upload(name);
    const auto &versions = server[name];
    Base &base = bases[name];
    const std::size_t missing = versions.size() - base.version;
    if (versions.empty() || (missing == 0 && delivery != Delivery::latest))
        return;
    base.content = delivery == Delivery::old ? versions[base.version + std::size_t(draw) % missing]
                                             : versions.back();
    if (delivery == Delivery::torn && base.content)
        base.content->resize(std::size_t(draw) % (base.content->size() + 1));
    write(name, base.content);
    if (delivery == Delivery::latest) {
        base.version = versions.size();
        incomplete.erase(name);
    } else {
        incomplete.insert(name);
    }
}

void Replica::synchronize() {
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(current()))
        names.insert(entry.path().filename());
    for (const auto &[name, base] : bases)
        names.insert(name);
    for (const std::string &name : names)
        upload(name);
    for (const auto &[name, versions] : server) {
        if (!versions.empty())
            deliver(name, Delivery::latest);
    }
}

} // namespace ellwynd::test
