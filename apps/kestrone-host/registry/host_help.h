// `kestrone-host help`: the component's help pages as HTML, opened in the user's browser.
#pragma once

#include <iosfwd>
#include <string>

namespace host {

// The HTML pages of the module's help: help/html/index.html beside the module. Empty when
// there are none.
std::string help_pages(const std::string& module_path);

// Opens the pages with xdg-open where a display is; else, or when that fails, says where they
// are. 0, or 1 when there are no pages.
int open_help(const std::string& module_path, std::ostream& out, std::ostream& err);

}  // namespace host
