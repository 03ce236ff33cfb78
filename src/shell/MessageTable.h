#ifndef SALTMARROW_SHELL_MESSAGETABLE_H
#define SALTMARROW_SHELL_MESSAGETABLE_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow {

// Every text the program shows itself, looked up by key (msgXxx, tipXxx,
// logXxx, ...). It starts with the English texts; a language file overwrites
// them and may add keys, which then follow the built-in ones in keys().
class MessageTable {
public:
    MessageTable();

    // Puts the English texts back (keys a language file added stay).
    void fillDefaults();
    // Number of keys the program itself defines.
    static std::size_t defaultCount();

    // The text of key; an unknown key gives the empty text.
    const std::string &text(std::string_view key) const;
    const std::string &operator[](std::string_view key) const { return text(key); }
    bool contains(std::string_view key) const;
    void set(const std::string &key, std::string text);
    // The text of key with its %1 and %2 markers replaced.
    std::string format(std::string_view key, std::string_view first, std::string_view second = {}) const;

    // All keys, the built-in ones in their fixed order first.
    const std::vector<std::string> &keys() const { return order_; }
    std::size_t size() const { return order_.size(); }

private:
    std::map<std::string, std::string, std::less<>> texts_;
    std::vector<std::string> order_;
};

}  // namespace saltmarrow

#endif
