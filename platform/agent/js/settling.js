// When a document counts as finished. The file is one function; given the ways into the document, a
// clock that the page cannot stop, and the function that tells the program, it gives what the agent
// calls when the document has loaded and when its address may have moved.
(function (dom, clock, tellFinished) {
  "use strict";

  // A page that draws itself does so in bursts of a few milliseconds with pauses for what it fetches.
  // A pause of this length, in milliseconds, ends the drawing; a page that never rests is taken as it
  // is at the limit.
  const kQuiet = 250;
  const kLimit = 2000;

  let stopWaiting = null;
  let toldAddress = null;

  function finish() {
    stopWaiting?.();
    toldAddress = dom.address();
    tellFinished();
  }

  /** Finishes as soon as `isReady` or the document is quiet, in place of what it waited for before. */
  function finishWhenSettled(isReady) {
    stopWaiting?.();
    let quiet = clock.after(kQuiet, finish);
    const limit = clock.after(kLimit, finish);
    const observer = new MutationObserver(() => {
      clock.cancel(quiet);
      if (isReady()) finish();
      else quiet = clock.after(kQuiet, finish);
    });
    observer.observe(document, { subtree: true, childList: true, characterData: true, attributes: true });
    stopWaiting = () => {
      observer.disconnect();
      clock.cancel(quiet);
      clock.cancel(limit);
      stopWaiting = null;
    };
  }

  /** A form counts once it holds something to fill in. */
  function hasForm() {
    return dom.forms().some((form) => dom.find(form, "input,select,textarea,button") !== null);
  }

  function loaded() {
    // Only a document that scripts may still draw is waited for.
    if (dom.forms().length > 0 || dom.scripts().length === 0) finish();
    else finishWhenSettled(hasForm);
  }

  /** A page moves within one document by its script (history entries) or by a fragment. */
  function moved() {
    if (toldAddress !== null && dom.address() !== toldAddress) finishWhenSettled(() => false);
  }

  return { loaded, moved };
})
