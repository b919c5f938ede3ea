// The members of documents, forms and elements as the engine has them. In a page an element named
// "forms", "URL" or "getAttribute" hides the document's or the form's own member of that name, from
// the agent's script too; the prototypes of the agent's world cannot be hidden. The file is one
// function, which gives the functions that go by the prototypes.
(function () {
  "use strict";

  function read(type, name, object) {
    return Object.getOwnPropertyDescriptor(type.prototype, name).get.call(object);
  }

  const { getAttribute, hasAttribute, matches, closest, querySelector } = Element.prototype;
  const { addEventListener, removeEventListener, dispatchEvent } = EventTarget.prototype;
  const { getElementsByTagName, createElementNS } = Document.prototype;

  // A page that opens its document anew (document.open) takes all listeners off it and its window. Those
  // of the agent come back with the new content; one that is there is not added twice.
  const kept = [];
  new MutationObserver(() => kept.forEach((given) => addEventListener.call(...given)))
    .observe(document, { childList: true });

  /** A listener for the life of the window. */
  function keep(...given) {
    kept.push([window, ...given]);
    addEventListener.call(window, ...given);
  }

  return {
    keep,
    read,
    forms: () => Array.from(read(Document, "forms", document)),
    scripts: () => read(Document, "scripts", document),
    address: () => read(Document, "URL", document),
    charset: () => read(Document, "characterSet", document),
    byTag: (name) => Array.from(getElementsByTagName.call(document, name)),
    first: (selector) => Document.prototype.querySelector.call(document, selector),
    newLink: (owner) => createElementNS.call(owner, "http://www.w3.org/1999/xhtml", "a"),
    isElement: (node) => node instanceof Element,
    parentOf: (node) => read(Node, "parentElement", node),
    attribute: (element, name) => getAttribute.call(element, name),
    has: (element, name) => hasAttribute.call(element, name),
    matches: (element, selector) => matches.call(element, selector),
    closest: (element, selector) => closest.call(element, selector),
    find: (element, selector) => querySelector.call(element, selector),
    listen: (target, type, listener) => addEventListener.call(target, type, listener),
    unlisten: (target, type, listener) => removeEventListener.call(target, type, listener),
    dispatch: (element, event) => dispatchEvent.call(element, event),
  };
})
