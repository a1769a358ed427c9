// The `set` statements, which both dialects have inside their blocks.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "pbrctl/Fields.h"
#include "pbrctl/Statement.h"

namespace Pbrctl {

// Reads a word as a field. THROWS: StatementError at the word.
template <class Read> auto inStatement(Word const& word, Read read) {
  try {
    return read(word.text);
  } catch (FieldError const& e) {
    Statement::failAt(word, e.text);
  }
}

// Stores where the class forwards. THROWS: StatementError when it forwards already.
void enterForward(Statement const& statement, std::optional<ForwardAst>& forward, ForwardAst value);

// set nexthop (none | ADDRESS…) [recursive]
// set nexthop-group NAME [nexthop (none | ADDRESS…)] [recursive]
// set dscp CODEPOINT
// Behind `no` whatever is left out is undone as a whole.
void readSetStatement(Statement& statement, std::optional<ForwardAst>& forward,
                      std::optional<unsigned>& dscp);
void readSetDscp(Statement& statement, std::optional<unsigned>& dscp);

} // namespace Pbrctl
