// What goes out with a form: where to, and in which bytes. The file is one function; given the ways into
// the document, the functions of the agent's other files and how often the user has pressed anything, it
// gives what the agent tells of forms.
(function (dom, parts, acts) {
  "use strict";

  // Encodings that the engine knows by name only: what a form sends in one goes out in UTF-8.
  const kReplaced = /^(csiso2022kr|hz-gb-2312|iso-2022-(cn|cn-ext|kr)|replacement)$/i;

  function encodingOf(form) {
    const labels = form === null ? null : dom.attribute(form, "accept-charset");
    for (const label of labels?.split(/[ \t\n\f\r,]+/) ?? []) {
      if (kReplaced.test(label)) return "replacement";
      try {
        return new TextDecoder(label).encoding;
      } catch {
        // an unknown label: the next one counts
      }
    }
    return dom.charset();
  }

  /** The name of an encoding (Encoding Standard), which the web knows in lower case, as forms have it. */
  function spelledEncoding(name) {
    const mixed = { big5: "Big5", shift_jis: "Shift_JIS" };
    return mixed[name] ?? (/^(windows-|x-|gb1|mac)/.test(name) ? name : name.toUpperCase());
  }

  let encodeForm = null;

  /** The bytes that the default encoding makes of a form's entries; a file gives its name. */
  function formBody(form, entries) {
    encodeForm ??= parts.formbody(dom, parts.convert);
    const texts = Array.from(entries, ([name, value]) => {
      // Some engines tell of the form's encoding only with what they send.
      const isUntold = name.toLowerCase() === "_charset_" && value === "UTF-8";
      if (isUntold) return [name, spelledEncoding(encodingOf(form).toLowerCase())];
      return [name, typeof value === "string" ? value : value.name];
    });
    return encodeForm(texts, encodingOf(form));
  }

  const codePage = new TextDecoder("windows-1252");

  /**
   * A field's name as it comes back from what was sent: each byte is one character of the code page, and
   * a plus sign is a blank, as everywhere in a record.
   */
  function recordedName(name, form) {
    if (/^[ -*,-~]*$/.test(name)) return name;
    const sent = formBody(form ?? null, [[name.toWellFormed(), ""]]).slice(0, -1);
    const bytes = sent.replace(/\+|%2B/g, " ").replace(/%(..)/g, (_, hex) => String.fromCharCode(parseInt(hex, 16)));
    return codePage.decode(Uint8Array.from(bytes, (byte) => byte.charCodeAt(0)));
  }

  /** A target's name as the page gives it; one of the reserved words counts as none. */
  function targetName(name) {
    return name?.startsWith("_") ? "" : name;
  }

  /** The target of a form or a link, by itself or by the document's own rule. */
  function targetOf(element) {
    return targetName(dom.attribute(element, "target") ?? dom.first("base[target]")?.target ?? "");
  }

  /** The form's action or method, or what the button that submits it says in its place. */
  const effective = (attribute, name, form, submitter) => (submitter?.hasAttribute("form" + attribute) ?
    submitter["form" + name] : dom.read(HTMLFormElement, attribute, form));

  const actionOf = (form, submitter) => effective("action", "Action", form, submitter);
  const goesToScript = (form, submitter) => dom.isScript(actionOf(form, submitter));

  /** Method, address and target with which a form goes out by a button. */
  function destinationOf(form, submitter) {
    const target = targetName(submitter?.getAttribute("formtarget")) ?? targetOf(form);
    const action = actionOf(form, submitter);
    const address = dom.isScript(action) ? dom.address() : action;
    return { method: effective("method", "Method", form, submitter), address, target };
  }

  // A body that is longer is not told: nobody types so much.
  const kLongestBody = 4 * 1024 * 1024;

  /** What the program is told of a form that goes out with these entries. */
  function describe(form, submitter, entries, isBodyTold = true) {
    const { method, address, target } = destinationOf(form, submitter);
    const body = isBodyTold || method === "post" ? formBody(form, entries) : "";
    return [address, method, target, body.length <= kLongestBody ? body : "", acts()];
  }

  return { encodingOf, recordedName, describe, goesToScript, targetOf };
})
