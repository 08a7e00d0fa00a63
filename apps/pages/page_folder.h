#pragma once

#include "apps/pages/index_page.h"

#include <string>

namespace tolvarin::ondrel::client {

/// A folder with an index and a page for each aircraft. Throws a Failure that names the file when
/// the system reports an error.
class PageFolder {
public:
    /// Creates the folder unless it exists.
    explicit PageFolder(std::string path);

    /// Writes all pages and replaces existing ones.
    void write(const IndexContents& contents) const;

    /// The file to open in a browser.
    std::string indexPath() const;

private:
    std::string pathOf(const std::string& page) const { return _path + "/" + page; }

    std::string _path;
};

} // namespace tolvarin::ondrel::client
