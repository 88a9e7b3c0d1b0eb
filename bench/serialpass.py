#!/usr/bin/env python3
"""Reads all courses of a Canvas server one request after another, and counts each student's missing
work: what a script with Python's standard library alone does. Prints the seconds from the course
list to the last course.

    serialpass.py ADDRESS CERTIFICATE-AUTHORITY TOKEN STUDENTS ASSIGNMENTS
"""
import http.client
import json
import re
import ssl
import sys
import time
from urllib.parse import urlsplit


def main():
    address, authority, token, students, assignments = sys.argv[1:]
    url = urlsplit(address)
    connection = http.client.HTTPSConnection(
        url.hostname, url.port, context=ssl.create_default_context(cafile=authority))
    headers = {"Authorization": "Bearer " + token, "User-Agent": "serialpass",
               "Accept": "application/json"}

    def read_list(path):
        records = []
        while path:
            connection.request("GET", path, headers=headers)
            response = connection.getresponse()
            body = response.read()
            if response.status != 200:
                sys.exit(f"HTTP {response.status}")
            records += json.loads(body)
            link = re.search(r'<([^>]+)>; *rel="next"', response.headers.get("Link", ""))
            path = None
            if link:
                following = urlsplit(link.group(1))
                path = following.path + "?" + following.query
        return records

    courses = read_list("/api/v1/courses?enrollment_type=teacher&include[]=term&per_page=100")
    begin = time.monotonic()
    for course in courses:
        base = f"/api/v1/courses/{course['id']}"
        enrolled = read_list(base + "/enrollments?type[]=StudentEnrollment&per_page=100")
        read_list(base + "/assignment_groups?include[]=assignments&per_page=100")
        work = read_list(base + "/students/submissions?student_ids[]=all&per_page=100")
        missing = {student["user_id"]: 0 for student in enrolled}
        for submission in work:
            missing[submission["user_id"]] += 1 if submission["missing"] else 0
        if len(enrolled) != int(students) or len(work) != int(students) * int(assignments):
            sys.exit("records were lost")
    print(f"{time.monotonic() - begin:.3f}")


main()
