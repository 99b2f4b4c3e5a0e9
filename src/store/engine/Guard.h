#pragma once

namespace orlo::store
{

/// SQLite's authorizer: lets statements from outside do only what the dialect offers. The first argument is the
/// Connection, whose refusal it sets.
int guard(void* connection, int action, const char* first, const char* second, const char* database,
          const char* through);

} // namespace orlo::store
