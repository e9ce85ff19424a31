# Groups, items and views, among them some that are broken.
print *document
print *written
print *empty
print shown
print *detached
print *asked
print *plain
print *matching
print *none
print *word
print *noGroup
print *noItem
print *zeroItem
print *noItems
print *noWord
set print elements 3
print *document
set print elements 200
