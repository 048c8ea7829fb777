// Where Unicode's small letters and its simple case folding differ.
#pragma once

#include <string>

namespace kintar::companion::postgres {

/// Characters to put in place of others once a text is in small letters: the first of `from` by the
/// first of `to` and so on. U+0130 is not among them: it has no small letter of one character.
struct FoldTable {
    std::string from;
    std::string to;
};

/// Cherokee folds to its capitals, all of them: a long table that other texts should not pay for.
enum class Cherokee : bool { Without, With };

FoldTable foldTable(Cherokee cherokee);

} // namespace kintar::companion::postgres
