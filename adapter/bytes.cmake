# Writes the bytes of the file IN into the file OUT as numbers for an initialiser.
file(READ ${IN} bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
file(WRITE ${OUT} "${bytes}\n")
