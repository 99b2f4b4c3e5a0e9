#pragma once

#include <QStringView>
#include <QVarLengthArray>

class QString;

namespace orlo::store
{

/// A token's meaning.
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

/// A token and its text in the statement, without quotes or brackets.
struct Token {
    Symbol symbol;
    QStringView text;
};

using Tokens = QVarLengthArray<Token, 96>;

/// Splits a statement into tokens, ending with End. Raises SqlError for an unclosed text, date or name and for anything
/// after a semicolon.
[[nodiscard]] Tokens tokenize(const QString& statement);

/// What to write instead of a common word or function of other dialects, with a leading blank; empty for other words.
[[nodiscard]] QString insteadOf(QStringView word);

} // namespace orlo::store
