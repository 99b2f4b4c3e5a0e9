#pragma once

#include <QStringView>
#include <QVarLengthArray>

class QString;

namespace orlo::store
{

/// What a statement of the dialect is made of.
enum class TokenKind : quint8 { Word, Number, Text, Date, Name, Open, Close, Comma, Operator, End };

/// Words with a meaning of their own to the translation; many words share one.
enum class Keyword : quint8 {
    None,
    All,
    Amp,
    As,
    Delete,
    Distinct,
    DistinctRow,
    From,
    Insert,
    Into,
    IsNull,
    Join,
    Left,
    Limit,
    Null,
    Order,
    Right,
    Select,
    Set,
    Sum,
    Union,
    Update,
    Where
};

/// One token, by its place in the statement.
struct Token {
    TokenKind kind;
    Keyword keyword;
    bool blankBefore;
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
