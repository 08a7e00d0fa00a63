#pragma once

#include "apps/pages/index_page.h"

#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// A folder with an index and a page for each aircraft. Throws a Failure that names the file when
/// the system reports an error.
///
/// A file with the name of a page is replaced or removed only if the client made it, which a tag in
/// it tells. With `force`, any file but a directory is replaced. The folder itself may be a
/// symbolic link; one inside it is never followed, and is taken for a file of somebody else.
class PageFolder {
public:
    /// Creates the folder as createFolder() does. Throws also if a file that may not be replaced
    /// has the name of a page.
    PageFolder(std::string path, bool force);

    /// Writes the pages, the index last, and removes the other pages of earlier runs. Each page is
    /// written under another name and renamed, so at any time, every page is whole.
    /// `head` is HTML for their heads.
    void write(const IndexContents& contents, std::string_view head = "") const;

    /// The file to open in a browser.
    std::string indexPath() const;

private:
    std::string pathOf(std::string_view name) const { return _path + "/" + std::string(name); }
    void checkReplaceable(const std::string& page) const;
    void replace(const std::string& page, std::string_view text) const;

    std::string _path;
    bool _force;
};

} // namespace tolvarin::ondrel::client
