# Leads links to headers to the reference, and leaves out those to folders that it lacks.
s,\[`\{0\,1\}\([A-Za-z./]*\)`\{0\,1\}](\([A-Za-z./]*/\)\{0\,1\}\([A-Za-z]*\.h\)),[\1](@ref \3),g
s,\[\([^]]*\)\]([./]*abi/[^)]*),\1,g
s,\[\([^]]*\)\]([./]*examples/[^)]*),\1,g
s,\[\([^]]*\)\]([./]*fuzz/[^)]*),\1,g
s,\[\([^]]*\)\]([./]*bench/[^)]*),\1,g
