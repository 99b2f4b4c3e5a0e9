#pragma once

#include <QStringView>
#include <QVarLengthArray>

class QString;

namespace orlo::store
{

/// What a statement of the dialect is made of.
enum class TokenKind : quint8 { Word, Number, Text, Date, Name, Open, Close, Comma, Sign, End };

/// The words and signs of the grammar. A word of no meaning is a name; a refused one belongs to other dialects and is a
/// name only in brackets.
enum class Keyword : quint8 {
    None,
    Refused,
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
    DistinctRow,
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
    // signs
    Amp,
    Dot,
    Equal,
    Greater,
    GreaterOrEqual,
    Less,
    LessOrEqual,
    Minus,
    Plus,
    Slash,
    Star,
    Unequal
};

/// One token, by its place in the statement.
struct Token {
    TokenKind kind;
    Keyword keyword;
    qsizetype start;
    qsizetype length; // of the content, without delimiters
};

using Tokens = QVarLengthArray<Token, 128>;

/// Cuts a statement into tokens, with one of kind End behind the last. Raises 3075 for an unclosed text, date or name,
/// a comment, and whatever stands behind a semicolon.
[[nodiscard]] Tokens tokenize(const QString& statement);

/// Raises 3075 with a detail.
[[noreturn]] void raiseSyntax(const QString& detail);

} // namespace orlo::store
