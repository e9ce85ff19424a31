"""Shows Quarry's documents in GDB as the library would give them.

GDB loads this file by itself with the installed library; otherwise: `source quarry.py`. Nothing of
the program is called: a core file does as well.

    (gdb) print *file.root
    $1 = group of 2 items = {item "title" at 1:1 = {"Harbor"}, item "size" at 2:1 = {1920, 1080}}

The layouts are those of ParserValue.h, ParserItem.h, ParserGroup.h and ParserWord.h.
"""

import math
import re

import gdb
import gdb.printing

NO_ARRAY = -1
KEYWORD = 1
LONGEST_NUMBER = 4096
MOST_BYTES = 65536


def address_of(value):
    if value.address is None:
        raise ValueError('not in memory')
    return int(value.address)


def read_word(address, index=0):
    """Reads the pointer or size that is a number of words behind an address."""
    words = gdb.Value(address).cast(gdb.lookup_type('unsigned long').pointer())
    return int((words + index).dereference())


def pointee(address, type_name):
    """What the pointer at an address leads to; None for null."""
    pointer = read_word(address)
    if pointer == 0:
        return None
    return gdb.Value(pointer).cast(gdb.lookup_type(type_name).pointer()).dereference()


def text_at(address, length):
    """A text for GDB to read, escape and cut as it does with strings of the program."""
    return gdb.Value(address).cast(gdb.lookup_type('char').pointer()).lazy_string(length=length)


def bytes_at(address, length):
    return gdb.selected_inferior().read_memory(address, length).tobytes() if length else b''


def shown_part(length):
    """How much of so many bytes is shown; the length itself may be broken."""
    return min(length, gdb.parameter('print elements') or MOST_BYTES)


def quoted(address, length):
    """The same as text, for use within a sentence."""
    shown = shown_part(length)
    text = bytes_at(address, shown).decode('utf-8', 'backslashreplace')
    text = text.replace('\\', '\\\\').replace('"', '\\"')
    text = ''.join(c if c.isprintable() else repr(c)[1:-1] for c in text)
    return '"' + text + '"' + ('...' if shown < length else '')


def string_at(address):
    """Where the bytes of a std::string of the GNU library are, and how many."""
    return read_word(address), read_word(address, 1)


def quoted_string(string):
    return quoted(*string_at(address_of(string)))


def place_at(line, column):
    return ' at {}:{}'.format(line, column) if line else ''


# --- Numbers, as internal/NumberText reads them ---------------------------------------------------


def read_integer(text):
    match = re.match(rb'[ \t\n\v\f\r]*([+-]?\d+)', text)
    number = int(match.group(1)) if match else 0
    return max(-2**63, min(2**63 - 1, number))


def read_double(text):
    match = re.match(
        rb'[ \t\n\v\f\r]*([+-]?)(?:(0x(?:[0-9a-f]+\.?[0-9a-f]*|\.[0-9a-f]+)(?:p[+-]?\d+)?)'
        rb'|((?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?)|(inf)|(nan))', text, re.IGNORECASE)
    if not match:
        return 0.0
    sign, hexadecimal, decimal, infinity, _ = [part and part.decode() for part in match.groups()]
    try:
        number = float.fromhex(hexadecimal) if hexadecimal else float(
            decimal or infinity or 'nan')
    except OverflowError:
        number = math.inf
    return math.copysign(number, -1.0 if sign == '-' else 1.0)


def to_signed(number, bits):
    number &= 2**bits - 1
    return number - 2**bits if number >> (bits - 1) else number


# --- Values ---------------------------------------------------------------------------------------


class Printer:
    """What is broken is said in the place of the value: a debugger looks at such things too."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return self.describe_or_tell(self.describe)

    @staticmethod
    def describe_or_tell(describe):
        try:
            return describe()
        except (gdb.error, ValueError, OverflowError) as problem:
            return '<broken: {}>'.format(problem)


class Value:
    """A ParserValue, read by its layout: compilers leave its fields out of what they tell debuggers
    about a program, for a class with virtual functions, and would have the library tell them.
    """

    GROUP, BOOL, CHAR, INT, DOUBLE, STRING, BINARYDATA, EMPTY = range(8)
    NAMES = ['group', 'bool', 'char', 'int', 'double', 'string', 'block', 'empty tag']
    LONG_TEXT, STRING_TEXT = 30, 31
    TEXT_LEAD = 3  # so many bytes of a text in the value lie before its content

    def __init__(self, address):
        word = gdb.lookup_type('char').pointer().sizeof
        align = max(word, gdb.lookup_type('double').alignof)
        self.content = address + -(-(word + 8) // align) * align
        self.data = self.content + 2 * word
        self.size = -(-(self.data + 8 - address) // align) * align
        self.type = self.read(address + word, 'int')
        self.text_length, self.has_data, self.has_text = self.read_form(address + word + 4)

    @staticmethod
    def read(address, type_name):
        value = gdb.Value(address).cast(gdb.lookup_type(type_name).pointer()).dereference()
        return float(value) if type_name == 'double' else int(value)

    @classmethod
    def read_form(cls, address):
        """A length of five bits and two flags, which lie in the order of the machine's bytes."""
        form = cls.read(address, 'unsigned char')
        if 'little' in gdb.execute('show endian', to_string=True):
            return form & 31, form & 32, form & 64
        return form >> 3, form & 4, form & 2

    def show(self):
        """Returns what GDB is to show."""
        if not 0 <= self.type < len(self.NAMES):
            raise ValueError('no type of values: {}'.format(self.type))
        if self.type == self.EMPTY:
            return '<empty>'
        if not self.has_text and not self.has_data:
            return 'cleared ' + self.NAMES[self.type]
        if self.type == self.GROUP:
            group = pointee(self.content, 'Quarry::ParserGroup')
            return 'no group' if group is None else group
        if self.type == self.STRING:
            return text_at(*self.text())
        return self.show_block() if self.type == self.BINARYDATA else self.show_number()

    def text(self):
        """Where the text is, and how long."""
        if self.text_length == self.LONG_TEXT:
            return read_word(self.content), read_word(self.content, 1)
        if self.text_length == self.STRING_TEXT:
            return string_at(read_word(self.data))
        begin = self.content - self.TEXT_LEAD
        if self.text_length > self.data + 8 - begin:
            raise ValueError('no length of a text: {}'.format(self.text_length))
        return begin, self.text_length

    def show_block(self):
        block = read_word(self.data)
        size = read_word(block, 1)
        shown = shown_part(size)
        digits = ' '.join('{:02X}'.format(byte) for byte in bytes_at(read_word(block), shown))
        return '{} bytes {}{}'.format(size, digits, '...' if shown < size else '').rstrip()

    def show_number(self):
        """The number, and how it is spelled where one would not guess that."""
        if not self.has_text:
            return self.format(self.number())
        address, length = self.text()
        if length > LONGEST_NUMBER:
            return 'number spelled {}'.format(quoted(address, length))
        text = bytes_at(address, length)
        number = self.format(self.number() if self.has_data else self.convert(text))
        is_usual = number.split(' ')[0].encode() == text
        return number if is_usual else '{} spelled {}'.format(number, quoted(address, length))

    def number(self):
        if self.type == self.BOOL:
            return self.read(self.data, 'unsigned char') != 0
        if self.type == self.CHAR:
            return self.read(self.data, 'signed char')
        return self.read(self.data, 'int' if self.type == self.INT else 'double')

    def convert(self, text):
        if self.type == self.BOOL:
            return text == b'yes'
        if self.type == self.DOUBLE:
            return read_double(text)
        return to_signed(read_integer(text), 8 if self.type == self.CHAR else 32)

    def format(self, number):
        if self.type == self.BOOL:
            return 'yes' if number else 'no'
        if self.type == self.CHAR and 32 <= number < 127:
            return "{} '{}'".format(number, chr(number))
        return repr(number)


class ValuePrinter(Printer):
    def describe(self):
        return Value(address_of(self.value)).show()


# --- Items and groups -----------------------------------------------------------------------------


class ListPrinter(Printer):
    """Something that has others in it, side by side."""

    def children(self):
        try:
            for index, child in enumerate(self.elements()):
                yield str(index), child
        except (gdb.error, ValueError, OverflowError) as problem:
            yield 'broken', '<broken: {}>'.format(problem)

    def display_hint(self):
        return 'array'


class ItemPrinter(ListPrinter):
    KINDS = ['item', 'keyword', 'call']
    LONGER_NAME, STRING_NAME = 0x7F, 0x80

    def describe(self):
        kind = int(self.value['type'])
        if not 0 <= kind < len(self.KINDS):
            raise ValueError('no kind of items: {}'.format(kind))
        self.check_count()
        return '{} {}{}{}{}'.format(self.KINDS[kind], quoted(*self.name()),
                                    place_at(int(self.value['line']), int(self.value['column'])),
                                    self.describe_details(),
                                    ', folded' if self.value['folding'] else '')

    def name(self):
        """Where the name is, and how long."""
        address = address_of(self.value['name'])
        form = Value.read(address + 15, 'unsigned char')
        if form & self.STRING_NAME:
            return string_at(read_word(address))
        if form == self.LONGER_NAME:
            return read_word(address), Value.read(address + 8, 'unsigned int')
        if form > 15:
            raise ValueError('no length of a name: {}'.format(form))
        return address, form

    def describe_details(self):
        details = pointee(address_of(self.value['details']), 'Quarry::ParserItem::Details')
        if details is None:
            return ''
        count = to_signed(int(details['arrayCount']), 8 * details['arrayCount'].type.sizeof)
        array = {NO_ARRAY: '', 0: ', array'}.get(count, ', array of {}'.format(count))
        template = details['templateName']
        is_instance = string_at(address_of(template))[1] > 0
        return array + (', template ' + quoted_string(template) if is_instance else '')

    def check_count(self):
        count, capacity = int(self.value['count']), int(self.value['capacity'])
        if count > capacity:
            raise ValueError('{} values in {} places'.format(count, capacity))
        return count

    def elements(self):
        has_list = bool(self.value['hasList'])
        address = int(self.value['list']) if has_list else address_of(self.value['ownPlace'])
        for _ in range(self.check_count()):
            value = Value(address)
            yield self.describe_or_tell(value.show)
            address += value.size


class ItemList:
    """A list of pointers to items."""

    def __init__(self, address):
        pointer = gdb.lookup_type('Quarry::detail::ItemList').pointer()
        value = gdb.Value(address).cast(pointer).dereference()
        self.first, self.count = value['places'], int(value['count'])
        if self.count > int(value['capacity']):
            raise ValueError('no list of items')

    def __iter__(self):
        """The items, and None where one was detached."""
        for index in range(self.count):
            item = (self.first + index).dereference()
            yield item.dereference() if int(item) else None


class GroupPrinter(ListPrinter):
    def items(self):
        return ItemList(address_of(self.value['items']))

    def describe(self):
        details = pointee(address_of(self.value['details']), 'Quarry::ParserGroup::Details')
        has_name = details is not None and string_at(address_of(details['name']))[1] > 0
        count = self.items().count
        return 'group {}of {} item{}'.format(
            quoted_string(details['name']) + ' ' if has_name else '', count,
            '' if count == 1 else 's')

    def elements(self):
        return ('detached' if item is None else item for item in self.items())


class ItemsPrinter(ListPrinter):
    """A view of a group's items. What drivers it has is told by the names of their types, which are
    there without any information for debuggers. Patterns are not applied, but counted.
    """

    def __init__(self, value):
        super().__init__(value)
        self.items, self.patterns, self.shows_keywords = None, 0, True

    def read(self):
        self.patterns = 0
        driver = read_word(address_of(self.value['driver']))
        while driver and plinth_class(driver) == 'SubsetCollection':
            self.note_predicate(read_word(driver, 2))
            driver = read_word(driver, 1)
        if driver and plinth_class(driver) != 'VectorCollection':
            raise ValueError('a view of another kind')
        self.items = ItemList(read_word(driver, 1)) if driver else None

    def note_predicate(self, predicate):
        is_negative = plinth_class(predicate) == 'NotPredicate'
        kind = plinth_class(read_word(predicate, 1) if is_negative else predicate)
        if kind == 'MemberDatumPredicate':
            self.patterns += 1
        elif kind == 'MemberPredicate' and is_negative:
            self.shows_keywords = False
        else:
            raise ValueError('a view with predicates of its own')

    def describe(self):
        self.read()
        if not self.items:
            return 'view of nothing'
        left_out = ', before {} pattern{}'.format(self.patterns, '' if self.patterns == 1 else 's')
        return 'view of items' + (left_out if self.patterns else '')

    def elements(self):
        self.read()
        for item in self.items or []:
            if item is not None and (self.shows_keywords or int(item['type']) != KEYWORD):
                yield item


def plinth_class(instance):
    """The class of the base library that an object is of, from the name of its type."""
    text = gdb.lookup_type('char').pointer()
    type_info = read_word(read_word(instance) - text.sizeof)
    name = gdb.Value(read_word(type_info, 1)).cast(text).string('latin-1', length=80)
    match = re.match(r'\*?N6Plinth(\d\d)(.*)', name)
    return match.group(2)[:int(match.group(1))] if match else None


class WordPrinter(Printer):
    """Reads a word by its layout, as Value does."""

    NAMES = ['identifier', 'operator', 'separator', 'keyword', 'bool', 'binary data', 'brace', 'int',
             'double', 'string', 'empty tag', 'none', 'unknown']

    def describe(self):
        address = address_of(self.value)
        kind = Value.read(address + gdb.lookup_type('char').pointer().sizeof, 'int')
        if not 0 <= kind < len(self.NAMES):
            raise ValueError('no type of words: {}'.format(kind))
        text, _, start, length, line, column = [read_word(address, index) for index in range(2, 8)]
        return 'word {} ({}){}'.format(quoted(text + start, length), self.NAMES[kind],
                                       place_at(line, column))


# --- Which printer is whose -----------------------------------------------------------------------


def of_object(printer):
    """Makes a printer for objects and references to them. Where a compiler tells nothing about the
    class of a list, GDB says that its type is incomplete.
    """

    def make(value):
        if value.type.strip_typedefs().code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
        is_told = value.type.strip_typedefs().fields() or not issubclass(printer, ListPrinter)
        return printer(value) if is_told else None

    return make


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter('Quarry')
    for name, printer in [('ParserValue', ValuePrinter), ('ParserItem', ItemPrinter),
                          ('ParserItems', ItemsPrinter), ('ParserGroup', GroupPrinter),
                          ('ParserWord', WordPrinter)]:
        printers.add_printer(name, '^Quarry::{}$'.format(name), of_object(printer))
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printers(), replace=True)
