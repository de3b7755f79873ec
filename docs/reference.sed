# What Doxygen is to see of reference.md.

# Links lead to the documents beside the reference, where it is built and where it is installed.
s|\[\([^]]*\)\](\([^)]*\))|<a href="../docs/\2">\1</a>|g

# Names of classes become links.
s|`\(Tolen::[A-Za-z:]*\)`|\1|g
