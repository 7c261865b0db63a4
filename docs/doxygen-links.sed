# Leads the pages' links to headers to the reference, and leaves out those to programs, which it lacks.
s,\[`\{0\,1\}\([A-Za-z./]*\)`\{0\,1\}](\([A-Za-z./]*/\)\{0\,1\}\([A-Za-z]*\.h\)),[\1](@ref \3),g
s,\[\([^]]*\)\]([./]*examples/[^)]*),\1,g
