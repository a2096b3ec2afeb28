// The colours of a robot program in the editor: comments, keywords, numbers, characters, the
// component's macros and operators. Every construct of the language ends with its line, so a
// line is coloured on its own.
#pragma once

#include <Qsci/qscilexercustom.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace window {

enum class Colour : std::uint8_t { Plain, Comment, Keyword, Number, Character, Macro, Operator };

struct ColourSpan {
    std::size_t length = 0;  // bytes
    Colour colour = Colour::Plain;
};

using NameSet = std::set<std::string, std::less<>>;

// The spans of `text` (any number of lines), one after another, covering it whole; `macros` the
// names shown as the component's.
std::vector<ColourSpan> colour_spans(std::string_view text, const NameSet& macros);

class KflowLexer : public QsciLexerCustom {
    Q_OBJECT
  public:
    explicit KflowLexer(QObject* parent = nullptr);

    void set_macro_names(NameSet names);
    const char* language() const override { return "kflow"; }
    QString description(int style) const override;
    QColor defaultColor(int style) const override;
    QFont defaultFont(int style) const override;
    void styleText(int start, int end) override;

  private:
    NameSet macros_;
};

}  // namespace window
