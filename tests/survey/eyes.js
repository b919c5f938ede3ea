// What a user sees of the forms of a page, and does in them. The file is one function; it gives what the
// survey asks. A form goes by its number among those in sight, since pages draw theirs anew.
(() => {
  "use strict";

  const kTyped = ["text", "search", "tel", "url", "email", "password", "number", "textarea"];
  const kNotFilled = ["hidden", "submit", "image", "button", "reset", "file"];
  // By what a field says of itself; the first value that the field takes is used.
  const kValues = [
    [/mail/, "anna@example.org"], [/pass/, "Se7cret&more%"], [/zip|post(al)?.?code/, "10115"], [/year/, "2030"],
    [/card.?n|cc-?n/, "4111111111111111"], [/cvv|cvc|csc/, "123"], [/phone|tel|mobile/, "0301234567"],
    [/exp/, "12/30"], [/user|login|nick/, "anna12"],
    ...["J\u00f6rg & S\u00f6hne 12", "Anna", "anna12", "7", "12345", "anna@example.org", "https://example.org/anna",
      "2030-05-17", "10:30", "2030-05", "2030-W20", "2030-05-17T10:30", "#336699"].map((value) => [/./, value]),
  ];

  const within = (root) => [...root.querySelectorAll("*")].flatMap((element) =>
    element.shadowRoot ? [element, ...within(element.shadowRoot)] : [element]);
  const isDrawn = (element) => {
    const box = element.getBoundingClientRect();
    return element.checkVisibility({ visibilityProperty: true }) && box.width > 1 && box.right + scrollX > 0;
  };
  const isBox = (field) => ["checkbox", "radio"].includes(field.type);

  function formOf(element) {
    for (let at = element; at; at = at.getRootNode().host) {
      const form = at.matches("input,select,textarea,button") ? at.form : at.closest("form");
      if (form) return form;
    }
    return null;
  }

  const fieldsOf = (form) => within(document).filter((element) => element.matches("input,select,textarea") &&
    formOf(element) === form && !element.matches(":disabled") && !element.readOnly &&
    !kNotFilled.includes(element.type) && (isDrawn(element) || (isBox(element) && [...element.labels].some(isDrawn))));
  const forms = () => within(document).filter((element) =>
    element.localName === "form" && isDrawn(element) && fieldsOf(element).length > 0);
  const nameOf = (field) => field.name || field.getRootNode().host?.getAttribute("name") || "";
  const named = (i) => fieldsOf(forms()[i]).filter(nameOf);

  /** A user ticks one box of a name. */
  function toFill(i) {
    const fields = fieldsOf(forms()[i]);
    return fields.filter((field) => !isBox(field) ||
      field === fields.find((other) => isBox(other) && other.name === field.name));
  }

  function valueFor(field) {
    const says = [field.type, field.name, field.id, field.autocomplete, field.placeholder].join(" ").toLowerCase();
    const takes = (value) => {
      const probe = field.cloneNode();
      probe.value = value;
      return probe.value === value && probe.validity.valid && (field.maxLength < 0 || value.length <= field.maxLength);
    };
    const values = kValues.filter(([hint]) => hint.test(says)).map(([, value]) => value);
    return [...values, field.min, field.max].find((value) => value && takes(value)) ?? "";
  }

  function changed(field) {
    for (const type of ["input", "change"]) field.dispatchEvent(new Event(type, { bubbles: true, composed: true }));
  }

  function put(field, value) {
    const kind = field.matches("textarea") ? HTMLTextAreaElement : HTMLInputElement;
    Object.getOwnPropertyDescriptor(kind.prototype, "value").set.call(field, value);
    changed(field);
  }

  function choose(list) {
    const options = [...list.options].filter((option) => option.value !== "" && !option.disabled && !option.selected);
    for (const option of options.slice(0, list.multiple ? 2 : 1)) option.selected = true;
    if (options.length > 0) changed(list);
  }

  /** Where to click on an element; "key" if something lies over it, and it has the focus then. */
  function placeOf(element) {
    element.scrollIntoView({ behavior: "instant", block: "center" });
    const box = element.getBoundingClientRect();
    const place = [box.x + box.width / 2, box.y + box.height / 2];
    let hit = document.elementFromPoint(...place);
    for (let inner = hit; inner && (inner = hit.shadowRoot?.elementFromPoint(...place)) && inner !== hit;) hit = inner;
    for (let at = hit; at; at = at.parentNode ?? at.host) if (at === element) return place.join(" ");
    element.focus();
    return "key";
  }

  return {
    count: () => forms().length,
    tag: (i) => forms()[i].cloneNode().outerHTML.replace("</form>", ""),
    steps: (i) => toFill(i).length,
    /** Does one step of the filling, but for a text to be typed, which it gives; the field has the focus then. */
    step(i, k) {
      const field = toFill(i)[k];
      if (field.matches("select")) choose(field);
      else if (isBox(field) && !field.checked) field.click();
      else if (kTyped.includes(field.type)) {
        field.focus();
        field.select();
        return valueFor(field);
      } else if (!isBox(field)) put(field, valueFor(field));
      return "";
    },
    /** Whether the text stands there; what the keyboard could not do is done at the last. */
    isTyped(i, k, text, isLast) {
      const field = toFill(i)[k];
      if (isLast && field?.value === "") put(field, text);
      return field?.value === text;
    },
    /** The named fields in sight as they stand. */
    state: (i) => JSON.stringify(named(i).map((field) => nameOf(field) + "=" + (isBox(field) ?
      field.value + ":" + field.checked :
      field.matches("select") ? [...field.selectedOptions].map((option) => option.text) : field.value))),
    /** What they would send, a line for each. */
    pairs: (i) => named(i).filter((field) => !isBox(field) || field.checked)
      .map((field) => String(new URLSearchParams([[nameOf(field), field.value.replace(/\r?\n/g, "\r\n")]]))).join("\n"),
    refused: (i) => fieldsOf(forms()[i]).filter((field) => !field.validity.valid).map(nameOf).join(),
    /** Where to click to send: a place; "key": Enter, at what has the focus; "disabled". */
    send(i) {
      const form = forms()[i];
      const buttons = within(document).filter((element) => element.matches("button,input") &&
        ["submit", "image"].includes(element.type) && formOf(element) === form && isDrawn(element));
      const button = buttons.find((candidate) => !candidate.matches(":disabled"));
      if (button) return placeOf(button);
      if (buttons.length > 0) return "disabled";
      const lines = fieldsOf(form).filter((field) => field.matches("input") && kTyped.includes(field.type));
      lines.at(-1)?.focus();
      return "key";
    },
    /** Where to click on the first button of a page, which may open a form. */
    opener() {
      const button = within(document).find((element) => element.matches("button,[role=button]") && isDrawn(element));
      return button ? placeOf(button) : "none";
    },
  };
})()
