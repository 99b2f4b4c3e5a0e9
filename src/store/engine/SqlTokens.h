#pragma once

#include <QStringView>
#include <QVarLengthArray>

class QString;

namespace orlo::store
{

/// What a statement of the dialect is made of: names and literals, signs, and the words that have a meaning.
enum class Symbol : quint8 {
    End,
    Word, // a name
    Name, // one in brackets
    Number,
    Text,
    Date,
    // signs
    Amp,
    Close,
    Comma,
    Dot,
    Minus,
    Open,
    Plus,
    Slash,
    Star,
    // signs that compare
    Equal,
    Unequal,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    // words
    All,
    And,
    As,
    Asc,
    Between,
    By,
    Delete,
    Desc,
    Distinct,
    Exists,
    False,
    From,
    Group,
    Having,
    In,
    Inner,
    Insert,
    Into,
    Is,
    Join,
    Left,
    Like,
    Not,
    Null,
    On,
    Or,
    Order,
    Outer,
    Right,
    Select,
    Set,
    True,
    Union,
    Update,
    Values,
    Where,
    Refused // a word or sign of other dialects
};

/// One token: its text, without delimiters, stands in the statement.
struct Token {
    Symbol symbol;
    QStringView text;
};

using Tokens = QVarLengthArray<Token, 96>;

/// Cuts a statement into tokens, with End as the last. Raises 3075 for an unclosed text, date or name and for whatever
/// follows a semicolon.
[[nodiscard]] Tokens tokenize(const QString& statement);

/// What to write for a word that people know from elsewhere and the dialect doesn't have, with a blank before it;
/// nothing for others.
[[nodiscard]] QString insteadOf(QStringView word);

/// Raises 3075 with a detail.
[[noreturn]] void raiseSyntax(const QString& detail);

} // namespace orlo::store
