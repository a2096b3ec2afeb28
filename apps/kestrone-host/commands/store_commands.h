// The store's commands: the host's key/value store, the component's save into it and load from
// it, a project file behind it, and the property page as a property frame shows it.
#pragma once

#include <string>

#include "command.h"
#include "kestrone/variant.h"

namespace commands {

struct StoreList {  // store
    bool operator==(const StoreList&) const = default;
};
struct StoreSet {  // store KEY = VALUE
    std::string key;
    kestrone::Variant value;
    bool operator==(const StoreSet&) const = default;
};
struct StoreClear {  // store clear
    bool operator==(const StoreClear&) const = default;
};
struct StoreFile {  // store save FILE, store load FILE
    bool save = false;
    std::string path;
    bool operator==(const StoreFile&) const = default;
};
struct StoreWalk {  // writeprops (save), readprops
    bool save = false;
    bool operator==(const StoreWalk&) const = default;
};

struct PageOpen {  // page open
    bool operator==(const PageOpen&) const = default;
};
struct PageGet {  // page get WIDGET.PROPERTY, page get Changed (an empty widget)
    std::string widget, property;
    bool operator==(const PageGet&) const = default;
};
struct PagePut {  // page put WIDGET.PROPERTY = VALUE
    std::string widget, property;
    kestrone::Variant value;
    bool operator==(const PagePut&) const = default;
};
struct PageClick {  // page click WIDGET
    std::string widget;
    bool operator==(const PageClick&) const = default;
};
struct PageApply {  // page apply
    bool operator==(const PageApply&) const = default;
};

std::string format(const StoreList& c);
std::string format(const StoreSet& c);
std::string format(const StoreClear& c);
std::string format(const StoreFile& c);
std::string format(const StoreWalk& c);
std::string format(const PageOpen& c);
std::string format(const PageGet& c);
std::string format(const PagePut& c);
std::string format(const PageClick& c);
std::string format(const PageApply& c);

Reply execute(const StoreList& c, Context& context);
Reply execute(const StoreSet& c, Context& context);
Reply execute(const StoreClear& c, Context& context);
Reply execute(const StoreFile& c, Context& context);
Reply execute(const StoreWalk& c, Context& context);
Reply execute(const PageOpen& c, Context& context);
Reply execute(const PageGet& c, Context& context);
Reply execute(const PagePut& c, Context& context);
Reply execute(const PageClick& c, Context& context);
Reply execute(const PageApply& c, Context& context);

Parsed parse_store(const console::CommandLine& line);
Parsed parse_writeprops(const console::CommandLine& line);
Parsed parse_readprops(const console::CommandLine& line);
Parsed parse_page(const console::CommandLine& line);

}  // namespace commands
