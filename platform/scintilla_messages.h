// What the program says to the text control (CodeControl), by the published numbers of its
// messages, styles and options. platform/qt/code_widget.cpp holds each against the library's own.
#pragma once

// clang-format off
#define SCINTILLA_NUMBERS(use) \
    use(SCI_GETLENGTH, 2006) \
    use(SCI_GETCHARAT, 2007) \
    use(SCI_GETCURRENTPOS, 2008) \
    use(SCI_GETSTYLEAT, 2010) \
    use(SCI_REDO, 2011) \
    use(SCI_GETENDSTYLED, 2028) \
    use(SCI_CONVERTEOLS, 2029) \
    use(SCI_SETEOLMODE, 2031) \
    use(SCI_STARTSTYLING, 2032) \
    use(SCI_STYLECLEARALL, 2050) \
    use(SCI_STYLESETFORE, 2051) \
    use(SCI_STYLESETBACK, 2052) \
    use(SCI_STYLESETSIZE, 2055) \
    use(SCI_STYLESETFONT, 2056) \
    use(SCI_SETSELFORE, 2067) \
    use(SCI_SETSELBACK, 2068) \
    use(SCI_SETCARETFORE, 2069) \
    use(SCI_ASSIGNCMDKEY, 2070) \
    use(SCI_SETSTYLINGEX, 2073) \
    use(SCI_SETLINESTATE, 2092) \
    use(SCI_GETLINESTATE, 2093) \
    use(SCI_AUTOCSHOW, 2100) \
    use(SCI_AUTOCCANCEL, 2101) \
    use(SCI_AUTOCACTIVE, 2102) \
    use(SCI_AUTOCPOSSTART, 2103) \
    use(SCI_AUTOCSTOPS, 2105) \
    use(SCI_AUTOCSETCANCELATSTART, 2110) \
    use(SCI_AUTOCSETCHOOSESINGLE, 2113) \
    use(SCI_AUTOCSETAUTOHIDE, 2118) \
    use(SCI_GETLINE, 2153) \
    use(SCI_SETMARGINLEFT, 2155) \
    use(SCI_SETSEL, 2160) \
    use(SCI_LINEFROMPOSITION, 2166) \
    use(SCI_POSITIONFROMLINE, 2167) \
    use(SCI_EMPTYUNDOBUFFER, 2175) \
    use(SCI_SETTEXT, 2181) \
    use(SCI_GETTEXT, 2182) \
    use(SCI_CALLTIPSHOW, 2200) \
    use(SCI_CALLTIPCANCEL, 2201) \
    use(SCI_CALLTIPACTIVE, 2202) \
    use(SCI_CALLTIPSETBACK, 2205) \
    use(SCI_CALLTIPSETFORE, 2206) \
    use(SCI_AUTOCSETMAXHEIGHT, 2210) \
    use(SCI_SETMARGINWIDTHN, 2242) \
    use(SCI_AUTOCSETDROPRESTOFWORD, 2270) \
    use(SCI_SETSCROLLWIDTH, 2274) \
    use(SCI_TEXTWIDTH, 2276) \
    use(SCI_AUTOCSETTYPESEPARATOR, 2286) \
    use(SCI_LINELENGTH, 2350) \
    use(SCI_SETSCROLLWIDTHTRACKING, 2516) \
    use(SCI_AUTOCGETCURRENTTEXT, 2610) \
    use(SCI_SETLEXER, 4001) \
    use(STYLE_DEFAULT, 32) \
    use(STYLE_LINENUMBER, 33) \
    use(SC_EOL_LF, 2) \
    use(SCLEX_CONTAINER, 0) \
    use(SCMOD_SHIFT, 1) \
    use(SCMOD_CTRL, 2)
// clang-format on

#define SCINTILLA_ENUMERATOR(name, number) name = number,
enum ScintillaNumber : unsigned { SCINTILLA_NUMBERS(SCINTILLA_ENUMERATOR) };
#undef SCINTILLA_ENUMERATOR
