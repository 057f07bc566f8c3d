"""The events that stories expect, as (category, action, properties)."""

COMPLETED = ("DoUninstall", "UninstallCompleted", {"result": "success"})
FAILED = ("DoUninstall", "UninstallCompleted", {"result": "failure"})


def pop_up(source):
    return ("DoUninstall", "UninstallPopUp", {"source": source})


POP_UP = pop_up("uninstall_action")


def feedback(action, code, detail="", button="", source="uninstall_action"):
    return ("DoUninstall", action, {"MsgCode": code, "Msgdetail": detail,
                                    "isoption": "1" if button else "0",
                                    "source": source, "RetainActionName": button})


def offer_taken(code, button):
    """A reason with an offer was chosen, and its button pressed."""
    return (feedback("PopUp_FeedbackClick", code, button=button),
            feedback("RetainClick", code, button=button))


def reconfirm(button, delete_all="0"):
    return ("DoUninstall", "UninstallReConfirm", {"ButtonClick": button,
                                                  "is_delete_all": delete_all})


def subscribed(address):
    return ("DoUninstall", "UninstallCompleted",
            {"ButtonClick": "Subscribe", "result": "success", "email": address})


def left(page):
    return ("DoUninstall", "Click_exit", {"pagesource": page, "result": "success"})
