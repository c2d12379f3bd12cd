# For Doxygen: reads a header the way people read it. No line is added or taken away, so that messages name
# the right one, except that the line of "#pragma once" makes room for the command of the first.
#
#   - The paragraph that a header opens with documents the file.
#   - A comment holds for all declarations that follow it without an empty line.
#   - An explicit instantiation is no class of its own.
#   - A function that is "= default" or "= delete" needs no comment to say so.

function emit(line) {
  print line
}

# The change of the depth of braces and parentheses within a line of code.
function depth_of(code,    i, c, depth) {
  depth = 0
  for (i = 1; i <= length(code); ++i) {
    c = substr(code, i, 1)
    depth += (c == "{" || c == "(") - (c == "}" || c == ")")
  }
  return depth
}

function without_comment(line) {
  sub(/\/\/.*$/, "", line)
  return line
}

# A line of the opening paragraph. What is set in is code, but for the items of a list.
function opening_line(line) {
  sub(/^\/\//, "", line)
  if (line ~ /^   *[^ ]/ && line !~ /^   *[0-9]\./ && !list) {
    emit("///   " line)
    return
  }
  list = line ~ /^   *[0-9]\./ || (list && line ~ /^   /)
  gsub(/[\\%]/, "\\\\&", line)
  emit("///" line)
}

# Ends the block that was collected: a comment and the declarations behind it.
function finish(    i, last) {
  if (count == 0) {
    return
  }
  if (declarations > 1) {
    block[1] = "/**@{*/ " block[1]
    last = block[count]
    if (last ~ /\/\//) {
      block[count] = without_comment(last) "/**@}*/" substr(last, match(last, /\/\//))
    } else {
      block[count] = last " /**@}*/"
    }
  }
  for (i = 1; i <= count; ++i) {
    emit(block[i])
  }
  count = 0
  declarations = 0
  depth = 0
}

NR == 1 && /^\/\/ / {
  print "/// @file"
  opening_line($0)
  opening = 1
  next
}

opening {
  if (/^#pragma once/) {
    opening = 0
  } else {
    opening_line($0)
  }
  next
}

# A comment begins a block, unless it stands within a declaration.
/^ *\/\/\/($|[^<])/ && depth == 0 {
  if (declarations > 0) {
    finish()
  }
  block[++count] = $0
  next
}

count > 0 && declarations == 0 && depth == 0 && /^ *(template <.*> )?(class|struct|enum|union|namespace|extern "C") / {
  finish()
  emit($0)
  next
}

count > 0 && depth == 0 && (/^ *$/ || /^ *[}#]/ || /^ *(public|protected|private):/) {
  finish()
}

/^extern template / {
  instantiation = 1
}

instantiation {
  instantiation = !/;/
  emit("")
  next
}

/= (default|delete);/ && !/\/\/\/</ && count == 0 {
  what = /= default;/ ? "As the compiler makes it." : "There is none."
  sub(/;.*$/, "; ///< " what)
}

count > 0 {
  block[++count] = $0
  code = without_comment($0)
  depth += depth_of(code)
  if (depth == 0 && code ~ /[;}] *$/) {
    ++declarations
  }
  next
}

{ emit($0) }

END { finish() }
