// The body of a form, byte for byte as the engine sends it. The file is one function; given the ways into
// the document and the library's converter (text, encoding), it gives the function that encodes (names and
// values, encoding).
//
// The engine lets a script encode to UTF-8 alone. But it encodes the query of a link's address itself, to the
// encoding of the link's document, and with the same references ("&#1234;") as in a form for what that does
// not hold. So a form's texts are put into a link's address and come back encoded. Some old encodings the
// engine leaves to a library, in which it has other ways with a form than with an address.
(function (dom, convert) {
  "use strict";

  const kByLibrary = [
    "iso-8859-2", "iso-8859-4", "iso-8859-5", "iso-8859-10", "iso-8859-13", "iso-8859-14", "iso-8859-15",
    "iso-8859-16", "koi8-r", "macintosh", "windows-1250", "windows-1251", "windows-1254", "windows-1256",
    "windows-1258", "x-mac-cyrillic",
  ];

  // The characters that a body holds as they are, and those by which ISO-2022-JP shifts.
  const kEscaped = /[^\w*.-]/g;
  const kEscapedFirst = /[^\w*.\\~\x0e\x0f\x1b\x80-\uffff-]/g;

  function escapeByte(byte) {
    return byte === " " ? "+" : "%" + byte.charCodeAt(0).toString(16).toUpperCase().padStart(2, "0");
  }

  function withLineEnds(text) {
    return text.replace(/\r\n?|\n/g, "\r\n");
  }

  const isOwn = (encoding) => encoding === dom.charset().toLowerCase();

  /** The library, which is nearly as good, stands in where an engine has no transformations any more. */
  function goesByLibrary(encoding) {
    return kByLibrary.includes(encoding) || (!isOwn(encoding) && window.XSLTProcessor === undefined);
  }

  /** This document if it is in the encoding; otherwise an empty one, which a transformation can make in any. */
  function documentIn(encoding) {
    if (isOwn(encoding)) return document;
    const sheet = new DOMParser().parseFromString(
      `<x:stylesheet version="1.0" xmlns:x="http://www.w3.org/1999/XSL/Transform">
         <x:output method="html" encoding="${encoding}"/><x:template match="/"><html/></x:template>
       </x:stylesheet>`, "application/xml");
    const processor = new XSLTProcessor();
    processor.importStylesheet(sheet);
    return processor.transformToDocument(sheet);
  }

  const links = new Map();

  /** A text as the query of a link: escapes stay, other bytes are escaped where an address needs it. */
  function queryOf(text, encoding) {
    if (!links.has(encoding)) links.set(encoding, dom.newLink(documentIn(encoding)));
    const link = links.get(encoding);
    link.href = `http://host/?${text}#`; // an address loses blanks and controls at its end
    return link.search.slice(1);
  }

  /**
   * The same in ISO-2022-JP, whose pairs of bytes may look like escapes. With a "/" after each character every
   * pair has its own shifts, and its bytes can be told; those shifts, and the "/", are taken out again.
   */
  function iso2022JpQueryOf(text) {
    const apart = text.replace(/[\ud800-\udbff][\udc00-\udfff]|[^\0-\x7f]/g, "$&/");
    const bytes = (pair) => pair.replace(pair.length === 2 ? kEscaped : /(?!%\w\w)[^\w*.-]/g, escapeByte);
    return queryOf(apart, "iso-2022-jp")
      .replace(/%1B\$B(..|.{4}|.{6})(?=%1B\(B)/g, (_, pair) => "%1B$B" + bytes(pair))
      .replaceAll("/", "").replaceAll("%1B(B%1B$B", "").replaceAll("%1B(B%1B(J", "%1B(J");
  }

  // In pieces, since the engine's time for what an encoding does not hold grows with the square of the length.
  const kPieces = /[^]{1,4000}(?![\udc00-\udfff])/g;

  function encode(text, encoding) {
    const ready = text.replace(kEscapedFirst, escapeByte);
    const query = encoding === "iso-2022-jp" ? iso2022JpQueryOf(ready) :
      ready.replace(kPieces, (piece) => queryOf(piece, encoding));
    return query.replace(/(?!%\w\w)[^\w*.+-]/g, escapeByte);
  }

  function encodeByLibrary(text, encoding) {
    const bytes = text.split("\0").map((piece) => convert(piece, encoding)).join("\0");
    return withLineEnds(bytes).replace(kEscaped, escapeByte); // it makes line ends of other characters, too
  }

  return (entries, encodingName) => {
    const encoding = encodingName.toLowerCase();
    const lines = entries.map((pair) => pair.map(withLineEnds));
    if (encoding.startsWith("utf-") || encoding === "replacement") return new URLSearchParams(lines).toString();
    const escaped = goesByLibrary(encoding) ? encodeByLibrary : encode;
    return lines.map((pair) => pair.map((text) => escaped(text, encoding)).join("=")).join("&");
  };
})
