# Values as text, as data, as both and as neither, of each type; and what never was one.
print *readBool
print *readChar
print *readInt
print *readLongInt
print *readDouble
print *readHexadecimal
print *readInfinity
print *readNothing
print *readString
print *readEmpty
print *madeBool
print *madeChar
print *madeInt
print *madeDouble
print *madeString
print *madeBlock
print *madeEmptyBlock
print *madeGroup
print *cleared
print *clearedGroup
print *converted
print *writtenInt
print *askedString
print *noValue
print *noType
print *zeroValue
print *noGroupAtAll
print *noText
set print elements 3
print *readString
print *madeBlock
set print elements unlimited
print *noText
print *readString
set print elements 200
