// The body of a form, byte for byte as the engine sends it. The file is one function; given the
// library's converter (text, encoding), it gives the function that encodes (names and values, encoding).
//
// The engine encodes to any encoding but lets a script encode to UTF-8 alone. It does let a script
// decode, though, and the encoding standard's encoders are its decoders turned round, apart from the
// few exceptions that stand below. So the tables are the engine's own, made when a form needs one.
// Some old encodings the engine leaves to a library instead, which has ways of its own.
//
// Bytes are held as texts of the characters U+0000 to U+00FF.
(function (convert) {
  "use strict";

  const kByLibrary = [
    "iso-8859-2", "iso-8859-4", "iso-8859-5", "iso-8859-10", "iso-8859-13", "iso-8859-14", "iso-8859-15",
    "iso-8859-16", "koi8-r", "macintosh", "windows-1250", "windows-1251", "windows-1254", "windows-1256",
    "windows-1258", "x-mac-cyrillic",
  ];
  const kMultiByte = ["big5", "euc-jp", "euc-kr", "gb18030", "gbk", "shift_jis"];

  const kUnknown = "\ufffd";

  // Pairs of bytes that are decoded but never encoded to, by the first one.
  const kOnlyDecoded = {
    big5: (lead) => lead < 0xa1,
    "euc-jp": (lead) => lead === 0x8f, // begins three bytes
    shift_jis: (lead) => lead >= 0xed && lead <= 0xf9,
  };

  // Characters that two pairs of Big5 stand for; the second one is sent.
  const kLaterInBig5 = "\u2550\u255e\u2561\u256a\u5341\u5345";

  // Private characters by which GB 18030 once stood in for ones that Unicode has now.
  const kFormerGb18030 = {
    "\ue81e": "\xfe\x59", "\ue826": "\xfe\x61", "\ue82b": "\xfe\x66", "\ue82c": "\xfe\x67", "\ue832": "\xfe\x6d",
    "\ue843": "\xfe\x7e", "\ue854": "\xfe\x90", "\ue864": "\xfe\xa0", "\ue78d": "\xa6\xd9", "\ue78e": "\xa6\xda",
    "\ue78f": "\xa6\xdb", "\ue790": "\xa6\xdc", "\ue791": "\xa6\xdd", "\ue792": "\xa6\xde", "\ue793": "\xa6\xdf",
    "\ue794": "\xa6\xec", "\ue795": "\xa6\xed", "\ue796": "\xa6\xf3",
  };

  // --- Tables: bytes by character -----------------------------------------------------------------

  /** The bytes from first to last, those of a list of earlier bytes ahead of each. */
  function bytesFrom(first, last, ahead = [""]) {
    const bytes = Array.from({ length: last - first + 1 }, (_, i) => String.fromCharCode(first + i));
    return ahead.flatMap((start) => bytes.map((byte) => start + byte));
  }

  /** Adds what the engine decodes each sequence to; of two sequences for a character the first stays. */
  function addDecoded(table, encoding, sequences) {
    // A line feed behind each: no encoding takes one for a part of a sequence.
    const bytes = Uint8Array.from(sequences.map((sequence) => sequence + "\n").join(""), (byte) => byte.charCodeAt(0));
    const characters = new TextDecoder(encoding, { ignoreBOM: true }).decode(bytes).split("\n");
    sequences.forEach((sequence, i) => {
      const character = characters[i];
      if (character.length !== (character > "\ud7ff" && character < "\ue000" ? 2 : 1) || character === kUnknown) return;
      if (table.has(character) && !(encoding === "big5" && kLaterInBig5.includes(character))) return;
      table.set(character, sequence);
    });
  }

  function addPairs(table, encoding) {
    const isOnlyDecoded = kOnlyDecoded[encoding] ?? (() => false);
    const leads = bytesFrom(0x81, 0xfe).filter((lead) => !isOnlyDecoded(lead.charCodeAt(0)));
    addDecoded(table, encoding, bytesFrom(0x40, 0xfe, leads).filter((pair) => !pair.endsWith("\x7f")));
  }

  function addJapanese(table) {
    table.set("\u00a5", "\\");
    table.set("\u203e", "~");
    table.set("\u2212", table.get("\uff0d"));
  }

  function addChinese(table, encoding) {
    for (const character in kFormerGb18030) table.set(character, kFormerGb18030[character]);
    if (encoding === "gbk") {
      table.set("\u20ac", "\x80");
      return;
    }
    const digits = (ahead) => bytesFrom(0x30, 0x39, ahead);
    addDecoded(table, encoding, digits(bytesFrom(0x81, 0xfe, digits(bytesFrom(0x81, 0x84)))));
    table.set(kUnknown, "\x84\x31\xa4\x37"); // what cannot be decoded looks the same
    table.delete("\ue5e5");
  }

  function makeTable(encoding) {
    const table = new Map();
    const isChinese = encoding.startsWith("gb");
    if (!isChinese) addDecoded(table, encoding, bytesFrom(0x80, 0xff));
    if (kMultiByte.includes(encoding)) addPairs(table, encoding);
    if (isChinese) addChinese(table, encoding);
    if (encoding === "shift_jis" || encoding === "euc-jp") addJapanese(table);
    return table;
  }

  const tables = new Map();

  function tableOf(encoding) {
    if (!tables.has(encoding)) tables.set(encoding, makeTable(encoding));
    return tables.get(encoding);
  }

  // --- Encoders: a text to bytes ------------------------------------------------------------------

  /** What stands for a character that an encoding does not hold. */
  function reference(character) {
    return "&#" + character.codePointAt(0) + ";";
  }

  /** The four bytes that GB 18030 has for a character beyond U+FFFF. */
  function supplementaryGb18030(character) {
    let rest = character.codePointAt(0) - 0x10000 + 189000;
    let bytes = "";
    for (const [size, first] of [[10, 0x30], [126, 0x81], [10, 0x30], [126, 0x81]]) {
      bytes = String.fromCharCode(first + rest % size) + bytes;
      rest = Math.floor(rest / size);
    }
    return bytes;
  }

  function encodeByTable(text, encoding) {
    // Pairs by hand: with its flag "u" the engine's matcher takes U+FC05 behind U+FBCB for a pair's half.
    return text.replace(/[\ud800-\udbff][\udc00-\udfff]|[^\0-\x7f]/g, (character) => {
      if (encoding === "gb18030" && character.length === 2) return supplementaryGb18030(character);
      return tableOf(encoding).get(character) ?? reference(character);
    });
  }

  const kShifts = { ascii: "\x1b(B", roman: "\x1b(J", jis: "\x1b$B" };

  /** A half-width kana as the full-width one of the same sound, which ISO-2022-JP can send. */
  function fullWidthKana(character) {
    if (character < "\uff61" || character > "\uff9f") return character;
    return { "\uff9e": "\u309b", "\uff9f": "\u309c" }[character] ?? character.normalize("NFKC");
  }

  /** The shift state that a character needs, and its bytes in it. */
  function inIso2022Jp(character, state) {
    const stay = state === "roman" ? "roman" : "ascii";
    if (/[\x0e\x0f\x1b]/.test(character)) return [stay, reference(kUnknown)];
    if (character < "\x80") return [/[\\~]/.test(character) ? "ascii" : stay, character];
    if (character === "\u00a5") return ["roman", "\\"];
    if (character === "\u203e") return ["roman", "~"];
    const pair = tableOf("euc-jp").get(fullWidthKana(character));
    if (pair === undefined || pair.length !== 2) return [stay, reference(character)];
    return ["jis", pair.replace(/./gs, (byte) => String.fromCharCode(byte.charCodeAt(0) - 0x80))];
  }

  function encodeIso2022Jp(text) {
    let bytes = "";
    let state = "ascii";
    const append = ([needed, more]) => {
      bytes += (needed === state ? "" : kShifts[needed]) + more;
      state = needed;
    };
    for (const character of text) append(inIso2022Jp(character, state));
    append(["ascii", ""]);
    return bytes;
  }

  function encode(text, encoding) {
    if (encoding === "iso-2022-jp") return encodeIso2022Jp(text);
    if (!kByLibrary.includes(encoding)) return encodeByTable(text, encoding);
    return text.split("\0").map((piece) => convert(piece, encoding)).join("\0");
  }

  // --- The body -----------------------------------------------------------------------------------

  function withLineEnds(text) {
    return text.replace(/\r\n?|\n/g, "\r\n");
  }

  function escapeByte(byte) {
    return byte === " " ? "+" : "%" + byte.charCodeAt(0).toString(16).toUpperCase().padStart(2, "0");
  }

  return (entries, encodingName) => {
    const encoding = encodingName.toLowerCase();
    if (encoding.startsWith("utf-") || encoding === "replacement") {
      return new URLSearchParams(entries.map((pair) => pair.map(withLineEnds))).toString();
    }
    const escaped = (text) => withLineEnds(encode(text, encoding)).replace(/[^0-9A-Za-z*._-]/g, escapeByte);
    return entries.map((pair) => pair.map(escaped).join("=")).join("&");
  };
})
