#include "apps/pages/page_folder.h"

#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view temporaryStart = ".ondrel-"; // the number of the process follows

void throwIf(const std::error_code& error, const std::string& what) {
    if (error) {
        throw Failure("cannot " + what + ": " + error.message());
    }
}

/// Whether it is a file of a run that was killed while it wrote a page.
bool isLeftOver(std::string_view name) {
    return name.substr(0, temporaryStart.size()) == temporaryStart &&
           name.find_first_not_of("0123456789", temporaryStart.size()) == std::string_view::npos;
}

/// Whether a page of this or another run may have that name.
bool isPageName(std::string_view name) {
    return name == indexName || (name.size() == 11 && name.substr(6) == ".html" &&
                                 name.find_first_not_of("0123456789ABCDEF") == 6);
}

/// The head of each page has the tag.
bool isMadeHere(const std::string& path) {
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(path, error))) {
        return false;
    }
    std::array<char, 512> start{};
    std::ifstream file(path, std::ios::binary);
    file.read(start.data(), start.size());
    const std::string_view text(start.data(), static_cast<std::size_t>(file.gcount()));
    return text.find(generatorTag) != std::string_view::npos;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    throwIf(error, "read " + folder);
    return names;
}

void removeFile(const std::string& path) {
    std::error_code error;
    fs::remove(path, error);
    throwIf(error, "remove " + path);
}

/// A file that does not stay unless it is renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string path) : _path(std::move(path)) { removeFile(_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code error;
        fs::remove(_path, error);
    }

    /// Messages call the file by `name`.
    void write(std::string_view text, const std::string& name) const {
        File file = File::openForWriting(_path, name);
        file.write(text);
        file.close();
    }

    void rename(const std::string& path) const {
        std::error_code error;
        fs::rename(_path, path, error);
        throwIf(error, "write " + path);
    }

private:
    std::string _path;
};

} // namespace

PageFolder::PageFolder(std::string path, bool force) : _path(std::move(path)), _force(force) {
    std::error_code error;
    fs::create_directories(_path, error);
    if (!error && !fs::is_directory(_path, error)) {
        error = std::make_error_code(std::errc::not_a_directory);
    }
    throwIf(error, "create " + _path);
    for (const std::string& name : namesIn(_path)) {
        if (isPageName(name)) {
            checkReplaceable(name);
        }
    }
    TemporaryFile(temporaryPath()).write("", "files in " + _path);
}

std::string PageFolder::indexPath() const {
    return pathOf(indexName);
}

std::string PageFolder::temporaryPath() const {
    return pathOf(std::string(temporaryStart) + std::to_string(::getpid()));
}

void PageFolder::checkReplaceable(const std::string& page) const {
    const std::string path = pathOf(page);
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::is_directory(status)) {
        throw Failure("cannot write " + path +
                      ": it is a directory; move it away or choose another folder");
    }
    if (fs::exists(status) && !_force && !isMadeHere(path)) {
        throw Failure("will not replace " + path +
                      ", which ondrel did not make; choose another folder, or replace it with "
                      "--force");
    }
}

void PageFolder::replace(const std::string& page, std::string_view text) const {
    const TemporaryFile file(temporaryPath());
    file.write(text, pathOf(page));
    checkReplaceable(page);
    file.rename(pathOf(page));
}

void PageFolder::write(const IndexContents& contents, std::string_view head) const {
    std::set<std::string> written = {std::string(indexName)};
    for (const TrackedAircraft& aircraft : contents.aircraft) {
        const std::string page = pageName(aircraft.icaoAddr());
        replace(page, wholePage(aircraftPage(aircraft, contents.showing, contents.history), head));
        written.insert(page);
    }
    replace(std::string(indexName), wholePage(indexPage(contents), head));
    for (const std::string& name : namesIn(_path)) {
        const bool isOld = isPageName(name) && written.count(name) == 0 && isMadeHere(pathOf(name));
        if (isOld || isLeftOver(name)) {
            removeFile(pathOf(name));
        }
    }
}

} // namespace tolvarin::ondrel::client
