// The fields of a form as the rules of capture and playback know fields; see docs/document.md. The file is
// one function; given the ways into the document, it gives what can be known of a form's fields.
(function (dom) {
  "use strict";

  const kFields = "input,select,textarea,button";
  const kFilledIn = "input:not([type=hidden i]),select,textarea";

  // The custom element that stands in a form for the field inside it.
  const owners = new WeakMap();

  const named = (field) => owners.get(field) ?? field;
  const nameOf = (field) => dom.attribute(named(field), "name") ?? "";

  /** What of a form's element holds the value: itself, or the field inside a custom element. */
  function fieldOf(element, form) {
    if (dom.matches(element, kFields)) return element;
    if (!dom.nameOf(element).includes("-")) return undefined;
    const inside = dom.select(kFields, dom.shadowOf(element) ?? element);
    const field = inside.find((each) => dom.matches(each, kFilledIn)) ?? inside[0];
    // A field that belongs to the form itself needs nobody to stand for it.
    if (field === undefined || field.form === form) return undefined;
    owners.set(field, element);
    return field;
  }

  // The kinds of fields that hold a text. The program knows them by one name, whatever kind of text a
  // page's author expects in them.
  const kTextTypes = new Set(["color", "date", "datetime-local", "email", "month", "number", "range", "search", "tel",
    "time", "url", "week"]);

  function typeOf(field) {
    const type = field.type ?? "";
    if (kTextTypes.has(type)) return "text";
    const isSubmit = dom.nameOf(field) === "button" && dom.attribute(named(field), "type") === "submit";
    return isSubmit ? "submit" : type;
  }

  /** The custom elements that give a form their data only when it goes out: the engine does not list them. */
  function unlistedOf(form) {
    const isOwn = (element) => dom.nameOf(element).includes("-") && dom.shadowOf(element) !== null;
    return Array.from(dom.findAll(form, "[name],[type=submit]")).filter(isOwn);
  }

  function elementsOf(form) {
    const listed = Array.from(dom.read(HTMLFormElement, "elements", form));
    const unlisted = dom.roots().length === 1 ? [] : unlistedOf(form).filter((element) => !listed.includes(element));
    if (unlisted.length === 0) return listed;
    return [...listed, ...unlisted].sort((a, b) => (dom.precedes(a, b) ? -1 : 1));
  }

  function fieldsOf(form) {
    return elementsOf(form)
      .map((element) => fieldOf(element, form))
      .filter((field) => field !== undefined);
  }

  const isDisabled = (field) => dom.matches(field, ":disabled");

  /** A field with what every listing wants to know of it: long forms are listed, and each look takes its time. */
  const controlOf = (field) =>
    ({ field, name: nameOf(field), type: typeOf(field), isDisabled: isDisabled(field) });

  const isButton = ({ type }) => type === "submit";

  /** Whether a record can know a control: what has no name and submits nothing is neither sent nor filled. */
  const isKnowable = (control) => control.name !== "" || isButton(control);

  /** A text as a record has it: there a plus sign stands for a blank, and the blanks at the ends go. */
  function recorded(text) {
    if (!text.includes("+")) return text;
    return text.replace(/^\++|\++$/g, (ends) => "\xa0".repeat(ends.length)).replaceAll("+", " ");
  }

  const isBox = ({ type }) => type === "checkbox" || type === "radio";

  /** Whether a form has no other checkbox of the name. */
  function isAlone({ field, name }) {
    const found = field.form === null ? null : dom.read(HTMLFormElement, "elements", field.form).namedItem(name);
    let count = 0;
    for (const other of found instanceof RadioNodeList ? found : []) {
      if (other.type === "checkbox") count += 1;
      if (count > 1) return false;
    }
    return true;
  }

  /** A field's value. Of a box it is what a tick sends: some pages have it follow the tick. */
  function valueOf(control) {
    const value = control.field.value ?? "";
    if (!isBox(control)) return value;
    const mayFollow = control.type === "checkbox" && value === "false" && isAlone(control);
    return mayFollow ? "true" : recorded(value);
  }

  // The kinds of lines of which a form must not have two for Enter to send it (HTML, "implicit submission").
  const kLines = ["date", "datetime-local", "email", "month", "number", "password", "search", "tel", "text", "time",
    "url", "week"];

  /**
   * The line in which Enter sends a form that has no button; undefined where a button, or a picture in the
   * document, may do it.
   */
  function enterLineOf(form) {
    const fields = fieldsOf(form);
    const [line, ...others] = fields.filter((field) => dom.nameOf(field) === "input" && kLines.includes(field.type));
    if (line === undefined || others.length > 0 || typeOf(line) !== "text" || line.form !== form) return undefined;
    const hasButton = fields.some((field) => typeOf(field) === "submit");
    return hasButton || isDisabled(line) || dom.select("input[type=image i]").length > 0 ? undefined : line;
  }

  return {
    kFields,
    kFilledIn,
    nameOf,
    fieldsOf,
    isDisabled,
    controlOf,
    isButton,
    isKnowable,
    isBox,
    valueOf,
    recorded,
    enterLineOf,
  };
})
