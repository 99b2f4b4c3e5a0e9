#pragma once

#include "support/Files.h"

namespace orlo::test
{

/// A small pack, for fill(). Dens, keys 1 to 3: Tiger Den 1, Wolf Den 3 and the inactive Bear Den 2. Scouts: Ada of the
/// Wolves, Bo of the Bears, Cy without a den, and Di, an inactive Wolf. Adults: Ann leads dens 1, 2 and a deleted one
/// and is the pack's chair, Bob leads the Wolves without a title, the inactive Cid helps them, and Dot is the pack's
/// cook.
inline const QByteArray PackFile = contents(QStringLiteral(ORLO_SOURCE_DIR "/tests/support/pack.sql"));
inline const char* const Pack = PackFile.constData();

} // namespace orlo::test
