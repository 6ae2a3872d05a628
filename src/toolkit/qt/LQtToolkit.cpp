// The Qt peers of the window toolkit.
